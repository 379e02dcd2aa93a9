#pragma once

#include "utilities/String.h"

namespace Utilities {

// Paths travel between classes in the neutral form, with forward slashes; the same form is the
// native one of a POSIX system. These are the text operations on such paths.
class PathForm {
public:
    // Every backslash becomes a slash, but for one that is the second byte of a double-byte
    // character: a lead byte of 128 to 159 before it says so.
    static String ToNeutral(const String& path);

    // The path without one trailing slash; the root stays the root.
    static String WithoutTrailingSeparator(const String& path);

    // The last component; the empty text for an empty path or one that ends in a slash.
    static String LastComponent(const String& path);

    // The path without its last component: the root for a component right below it, the
    // working directory "." for a path of one component.
    static String Parent(const String& path);
};

}
