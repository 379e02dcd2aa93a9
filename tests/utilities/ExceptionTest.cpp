#include "cmetry/ExceptionCMetry.h"
#include "diagnostics/String.h"
#include "driver/ExceptionPaviloCommunication.h"
#include "manager/ExceptionHviModule.h"
#include "utilities/ExceptionBusiness.h"
#include "utilities/ExceptionGUICreation.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionWrongType.h"

#include <gtest/gtest.h>

#include <string>

using namespace Utilities;

namespace {

template<class Thrown, class Caught>
std::string ValueStringCaughtAs(const char* text)
{
    try {
        throw Thrown(text);
    } catch (const Caught& caught) {
        return caught.GetValueString().CString();
    }
}

}

TEST(ExceptionTest, ValueStringNamesTheMostDerivedClass)
{
    EXPECT_EQ("Utilities::ExceptionOutOfBound: vector index >= vector size",
        (ValueStringCaughtAs<ExceptionOutOfBound, Exception>("vector index >= vector size")));
    EXPECT_EQ("Utilities::ExceptionWrongType: ", (ValueStringCaughtAs<ExceptionWrongType, ExceptionBusiness>("")));
    EXPECT_EQ("HviManager::ExceptionHviModule: m",
        (ValueStringCaughtAs<HviManager::ExceptionHviModule, ExceptionResource>("m")));
    EXPECT_EQ("CMetry::ExceptionCMetry: c", (ValueStringCaughtAs<CMetry::ExceptionCMetry, ExceptionBusiness>("c")));
    EXPECT_EQ("DeviceDriver::ExceptionPaviloCommunication: p",
        (ValueStringCaughtAs<DeviceDriver::ExceptionPaviloCommunication, Exception>("p")));
    EXPECT_EQ("Utilities::ExceptionGUICreation: g", (ValueStringCaughtAs<ExceptionGUICreation, ExceptionGUI>("g")));
}

TEST(ExceptionTest, CopiesOwnTheirText)
{
    auto* source = new ExceptionNullpointer(String("SmartPointer is null"));
    const ExceptionNullpointer copy(*source);
    EXPECT_NE(source->Text(), copy.Text());
    delete source;
    EXPECT_STREQ("SmartPointer is null", copy.Text()->CString());

    ExceptionNullpointer assigned("old");
    assigned = copy;
    EXPECT_STREQ("SmartPointer is null", assigned.Text()->CString());
    EXPECT_NE(copy.Text(), assigned.Text());
    const String* before = assigned.Text();
    const ExceptionNullpointer& alias = assigned;
    assigned = alias;
    EXPECT_EQ(before, assigned.Text());
}
