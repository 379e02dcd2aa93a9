#pragma once

namespace Utilities {

// The root of every component: it only makes deletion through a base pointer safe.
class ComponentBase {
public:
    virtual ~ComponentBase();
};

}
