#include "cmetry/ExceptionCMetry.h"
#include "diagnostics/String.h"
#include "driver/ExceptionPaviloCommunication.h"
#include "manager/ExceptionHviModule.h"
#include "utilities/ExceptionBusiness.h"
#include "utilities/ExceptionCalculationProblem.h"
#include "utilities/ExceptionComponentFactory.h"
#include "utilities/ExceptionDllLoader.h"
#include "utilities/ExceptionGUICreation.h"
#include "utilities/ExceptionMultithreading.h"
#include "utilities/ExceptionNamingService.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionOutOfMemory.h"
#include "utilities/ExceptionResourceNotAvailable.h"
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

TEST(ExceptionTest, EveryClassIsCaughtThroughItsBase)
{
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionNullpointer, ExceptionResource>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionOutOfMemory, ExceptionResource>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionResourceNotAvailable, ExceptionResource>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionComponentFactory, ExceptionResource>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionDllLoader, ExceptionResource>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionNamingService, ExceptionResource>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionMultithreading, ExceptionResource>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionCalculationProblem, ExceptionBusiness>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionResource, Exception>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionBusiness, Exception>("")));
    EXPECT_NO_THROW((ValueStringCaughtAs<ExceptionGUI, Exception>("")));
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
    assigned = assigned;
    EXPECT_EQ(before, assigned.Text());
}

TEST(ExceptionTest, TextFromATemplate)
{
    String text("%VALUE% is not a valid color space");
    text.Replace(String("%VALUE%"), String("17"));
    try {
        throw CMetry::ExceptionCMetry(text);
    } catch (const Exception& failure) {
        EXPECT_STREQ("17 is not a valid color space", failure.Text()->CString());
        EXPECT_EQ(text.Stamp(), failure.Text()->Stamp());
    }
}
