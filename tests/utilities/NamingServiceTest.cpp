#include "utilities/NamingService.h"
#include "utilities/Anything.h"
#include "utilities/ComponentCreatorBase.h"
#include "utilities/ComponentCreatorNormal.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ResolveAs.h"

#include "tests/utilities/FailureText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace Utilities;

namespace {

struct Probe : Component { };
struct OtherProbe : Component { };

struct Unloadable : Component {
    bool PrepareForUnload() override { return true; }
};

// Registered as static objects, as the components of the module register theirs.
ComponentCreatorNormal<Probe> normalProbes(
    "NamingServiceTest.Normal", "$Revision: 1.2 $", "NamingServiceTest", {{"testOnlyKey", Anything("normal")}});
ComponentCreatorSingleton<Probe> singletonProbe("NamingServiceTest.Singleton", "$Revision: 1.3 $", "NamingServiceTest");

SmartPointer<Component> Resolved(const std::string& name)
{
    SmartPointer<Component> result;
    NamingService::Instance().Resolve(name, result);
    return result;
}

const Component* Address(const SmartPointer<Component>& component)
{
    return component.IsNull() ? nullptr : &*component;
}

template<class T>
bool IsA(const SmartPointer<Component>& component)
{
    return !component.IsNull() && dynamic_cast<T*>(&*component) != nullptr;
}

// A creator whose descriptor is exactly what the test gives, "version" missing included.
class BareCreator : public ComponentCreatorBase {
public:
    explicit BareCreator(ComponentDescriptor given) : descriptor(std::move(given)) { Register(); }
    ~BareCreator() override { Unregister(); }

    ComponentDescriptor GetDescriptor() const override { return descriptor; }
    void Create(SmartPointer<Component>& result) override { result = SmartPointer<Component>(new OtherProbe); }
    uint32_t ReleaseInstance() override { return 0; }
    uint32_t GetInstanceCount() const override { return 0; }
    bool PrepareForUnload() override { return true; }

private:
    const ComponentDescriptor descriptor;
};

std::set<std::string> NamesOf(ComponentDescriptorIterator found)
{
    std::set<std::string> names;
    for (; found.IsValid(); ++found) {
        names.insert(found.Current().at("name").AsString().ToStdString());
    }
    return names;
}

}

// Every component of the module registers through a static creator in its own source file;
// a creator that is left out of the link or never constructed shows here.
TEST(NamingServiceTest, EveryComponentOfTheModuleResolves)
{
    for (const char* name : {"Preferences", "LanguageService", "MutexImplementation", "ThreadImplementation",
             "PaviloFunctionality", "PaviloLowLevelDriver"}) {
        EXPECT_FALSE(Resolved(name).IsNull()) << name;
    }
    EXPECT_FALSE(Resolved("NamingServiceTest.Normal").IsNull());
    EXPECT_FALSE(Resolved("NamingServiceTest.Singleton").IsNull());
}

TEST(NamingServiceTest, VersionIsTheRevisionNumberAsADouble)
{
    EXPECT_DOUBLE_EQ(1.33, NamingService::VersionOf({{"version", Anything("$Revision: 1.33 $")}}));
    EXPECT_EQ(-1.0, NamingService::VersionOf({{"name", Anything("x")}}));
    EXPECT_EQ(-1.0, NamingService::VersionOf({{"version", Anything("$Revision$")}}));
    EXPECT_EQ(-1.0, NamingService::VersionOf({{"version", Anything(2.0)}}));
}

TEST(NamingServiceTest, HigherVersionWinsWhicheverCameFirst)
{
    // The first creator makes a Probe, the second an OtherProbe; on equal versions the first stays.
    const struct {
        const char* first;
        const char* second;
        bool firstWins;
    } cases[] = {{"$Revision: 1.10 $", "$Revision: 1.9 $", false}, {"$Revision: 2.0 $", "$Revision: 1.5 $", true},
        {"$Revision: 1.5 $", "$Revision: 1.5 $", true}};
    for (const auto& each : cases) {
        ComponentCreatorNormal<Probe> first("NamingServiceTest.Versions", each.first, "NamingServiceTest");
        ComponentCreatorNormal<OtherProbe> second("NamingServiceTest.Versions", each.second, "NamingServiceTest");
        const SmartPointer<Component> winner = Resolved("NamingServiceTest.Versions");
        EXPECT_TRUE(each.firstWins ? IsA<Probe>(winner) : IsA<OtherProbe>(winner)) << each.first << each.second;
    }
    {
        BareCreator unversioned({{"name", Anything("NamingServiceTest.Unversioned")}});
        ComponentCreatorNormal<Probe> versioned(
            "NamingServiceTest.Unversioned", "$Revision: 0.1 $", "NamingServiceTest");
        EXPECT_TRUE(IsA<Probe>(Resolved("NamingServiceTest.Unversioned")));
    }
    EXPECT_TRUE(Resolved("NamingServiceTest.Versions").IsNull());
    EXPECT_TRUE(Resolved("NamingServiceTest.Unversioned").IsNull());
}

TEST(NamingServiceTest, RemovingTheWinnerLetsTheNextBestServe)
{
    ComponentCreatorNormal<Probe> lower("NamingServiceTest.Removal", "$Revision: 1.1 $", "NamingServiceTest");
    {
        ComponentCreatorNormal<OtherProbe> higher("NamingServiceTest.Removal", "$Revision: 1.2 $", "NamingServiceTest");
        EXPECT_TRUE(IsA<OtherProbe>(Resolved("NamingServiceTest.Removal")));
    }
    EXPECT_TRUE(IsA<Probe>(Resolved("NamingServiceTest.Removal")));
}

TEST(NamingServiceTest, NamedInstancesAreSharedPerFullName)
{
    const SmartPointer<Component> a = Resolved("NamingServiceTest.Normal:A");
    ASSERT_TRUE(IsA<Probe>(a));
    EXPECT_EQ(Address(a), Address(Resolved("NamingServiceTest.Normal:A")));
    EXPECT_NE(Address(a), Address(Resolved("NamingServiceTest.Normal:B")));
    EXPECT_NE(Address(a), Address(Resolved("NamingServiceTest.Normal:A:B")));
    EXPECT_EQ(Address(Resolved("NamingServiceTest.Normal:A:B")), Address(Resolved("NamingServiceTest.Normal:A:B")));
    EXPECT_NE(Address(Resolved("NamingServiceTest.Normal")), Address(Resolved("NamingServiceTest.Normal")));
    EXPECT_EQ(Address(Resolved("NamingServiceTest.Singleton")), Address(Resolved("NamingServiceTest.Singleton:X")));
}

TEST(NamingServiceTest, UnknownNamesLeaveTheResultAsItWas)
{
    // A named instance stays for the life of the process, so every run asks for a new one.
    static int run = 0;
    const std::string lateInstance = "NamingServiceTest.Late:" + std::to_string(++run);
    EXPECT_TRUE(Resolved("NamingServiceTest.Unknown").IsNull());
    EXPECT_TRUE(Resolved(lateInstance).IsNull());

    SmartPointer<Component> kept(new Probe);
    const Component* before = Address(kept);
    NamingService::Instance().Resolve("NamingServiceTest.Unknown:A", kept);
    EXPECT_EQ(before, Address(kept));

    // Had the failed look-up entered anything, the named instance would stay null now.
    ComponentCreatorNormal<Probe> late("NamingServiceTest.Late", "$Revision: 1.0 $", "NamingServiceTest");
    EXPECT_TRUE(IsA<Probe>(Resolved(lateInstance)));
}

TEST(NamingServiceTest, NormalCreatorCountsTheInstancesThatAreOut)
{
    ComponentCreatorNormal<Probe> creator("NamingServiceTest.Counted", "$Revision: 1.0 $", "NamingServiceTest");
    SmartPointer<Component> first = Resolved("NamingServiceTest.Counted");
    SmartPointer<Component> second = Resolved("NamingServiceTest.Counted");
    SmartPointer<Component> shared = first;
    EXPECT_EQ(2U, creator.GetInstanceCount());
    first = SmartPointer<Component>();
    EXPECT_EQ(2U, creator.GetInstanceCount());
    shared = SmartPointer<Component>();
    EXPECT_EQ(1U, creator.GetInstanceCount());
    second = SmartPointer<Component>();
    EXPECT_EQ(0U, creator.GetInstanceCount());
    EXPECT_TRUE(creator.PrepareForUnload());
}

TEST(NamingServiceTest, ComponentThatOutlivesItsCreatorGoesQuietly)
{
    auto creator = std::make_unique<ComponentCreatorNormal<Probe>>(
        "NamingServiceTest.Outlived", "$Revision: 1.0 $", "NamingServiceTest");
    SmartPointer<Component> survivor = Resolved("NamingServiceTest.Outlived");
    creator.reset();
    EXPECT_TRUE(Resolved("NamingServiceTest.Outlived").IsNull());
    survivor = SmartPointer<Component>();
}

TEST(NamingServiceTest, SingletonCreatorHandsOutOneObjectAndCountsItsHolders)
{
    ComponentCreatorSingleton<Unloadable> creator("NamingServiceTest.One", "$Revision: 1.0 $", "NamingServiceTest");
    EXPECT_EQ(0U, creator.GetInstanceCount());
    EXPECT_TRUE(creator.PrepareForUnload());
    SmartPointer<Component> first = Resolved("NamingServiceTest.One");
    EXPECT_EQ(1U, creator.GetInstanceCount());
    SmartPointer<Component> second = Resolved("NamingServiceTest.One");
    EXPECT_EQ(Address(first), Address(second));
    EXPECT_EQ(2U, creator.GetInstanceCount());
    first = SmartPointer<Component>();
    second = SmartPointer<Component>();
    EXPECT_EQ(0U, creator.ReleaseInstance());
    EXPECT_TRUE(creator.PrepareForUnload());

    ComponentCreatorSingleton<Probe> stubborn("NamingServiceTest.Stubborn", "$Revision: 1.0 $", "NamingServiceTest");
    Resolved("NamingServiceTest.Stubborn");
    EXPECT_FALSE(stubborn.PrepareForUnload());
}

TEST(NamingServiceTest, ResolveAsGivesNullForUnknownNamesAndOtherTypes)
{
    EXPECT_FALSE(ResolveAs<Probe>("NamingServiceTest.Normal").IsNull());
    EXPECT_TRUE(ResolveAs<OtherProbe>("NamingServiceTest.Normal").IsNull());
    EXPECT_TRUE(ResolveAs<Probe>("NamingServiceTest.Unknown").IsNull());
}

TEST(NamingServiceTest, DescriptorsAreFoundByKeyAndValue)
{
    NamingService& service = NamingService::Instance();
    EXPECT_EQ((std::set<std::string>{"NamingServiceTest.Normal", "NamingServiceTest.Singleton"}),
        NamesOf(service.GetComponentDescriptors("category", Anything("NamingServiceTest"))));
    EXPECT_EQ(std::set<std::string>{"NamingServiceTest.Normal"},
        NamesOf(service.GetComponentDescriptors("testOnlyKey", Anything())));
    EXPECT_TRUE(NamesOf(service.GetComponentDescriptors("testOnlyKey", Anything("other"))).empty());
    EXPECT_TRUE(NamesOf(service.GetComponentDescriptors("", Anything())).contains("NamingServiceTest.Singleton"));

    const ComponentDescriptorIterator found = service.GetComponentDescriptors("testOnlyKey", Anything("normal"));
    EXPECT_EQ("$Revision: 1.2 $", found.Current().at("version").AsString().ToStdString());
    ComponentDescriptorIterator past = found;
    ++past;
    ++past;
    EXPECT_FALSE(past.IsValid());
    EXPECT_EQ("no more ComponentDescriptors available.", FailureText<ExceptionOutOfBound>([&past] { past.Current(); }));
}

TEST(NamingServiceTest, ThreadsResolvingOneNameShareOneObject)
{
    constexpr int threadCount = 8;
    std::vector<const Component*> seen(threadCount);
    std::vector<SmartPointer<Component>> held(threadCount);
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([i, &seen, &held] {
            held[i] = Resolved("NamingServiceTest.Normal:Concurrent");
            seen[i] = Address(held[i]);
            Resolved("NamingServiceTest.Singleton");
            Resolved("NamingServiceTest.Normal");
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ASSERT_NE(nullptr, seen[0]);
    for (const Component* each : seen) {
        EXPECT_EQ(seen[0], each);
    }
}

TEST(NamingServiceDeathTest, ProcessExitWithNamedInstancesIsQuiet)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            Resolved("MutexImplementation:NamingServiceTest");
            Resolved("NamingServiceTest.Normal:AtExit");
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^$");
}
