#include <mutex>
#include <vector>

#include <gtest/gtest.h>

#include "manager/InstrumentEvents_V1.h"
#include "manager/MessageService.h"
#include "manager/pavilo/Pavilo.h"
#include "tests/driver/PaviloSimFixture.h"
#include "utilities/ComponentCreatorSingleton.h"

namespace HviManagerTest {

using HviManager::InstrumentEvents_V1;
using HviManager::PaviloDriver::Pavilo;
using Utilities::Anything;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

struct Event {
    std::string name;
    Anything value;
};

std::mutex receivedGuard;
std::vector<Event> received;

void Receive(const String& name, const Anything& value)
{
    std::lock_guard<std::mutex> guard(receivedGuard);
    received.push_back({name.ToStdString(), value});
}

std::vector<Event> Received()
{
    std::lock_guard<std::mutex> guard(receivedGuard);
    return received;
}

// Delivers each event at once, on the thread that posts it.
class DirectMessageService : public GUI::MessageService {
public:
    Diagnostics::String GetValueString() const override { return Diagnostics::String(); }

    void Post(const String& name, const Anything& value) override
    {
        std::lock_guard<std::mutex> guard(lock);
        for (const auto& [subscribed, callback] : subscribers) {
            if (subscribed == name.ToStdString()) {
                callback(name, value);
            }
        }
    }

    void Subscribe(const String& name, Callback callback) override
    {
        std::lock_guard<std::mutex> guard(lock);
        subscribers.emplace_back(name.ToStdString(), callback);
    }

    void Unsubscribe(Callback callback) override
    {
        std::lock_guard<std::mutex> guard(lock);
        std::erase_if(subscribers, [callback](const auto& entry) { return entry.second == callback; });
    }

private:
    std::mutex lock;
    std::vector<std::pair<std::string, Callback>> subscribers;
};

}

class InstrumentEventsTest : public DeviceDriverTest::PaviloSimFixture {
protected:
    InstrumentEventsTest()
    {
        std::lock_guard<std::mutex> guard(receivedGuard);
        received.clear();
    }

    ~InstrumentEventsTest() override { instrument.Close(); }

    SmartPointer<InstrumentEvents_V1> Events()
    {
        // The buttons open the handles, so that the key can be read.
        EXPECT_FALSE(instrument.GetInterface(String("InstrumentButtons_V1")).IsNull());
        return Utilities::SmartPointerCast<InstrumentEvents_V1>(instrument.GetInterface(String("InstrumentEvents_V1")));
    }

    bool ReceivedEvent(const std::string& name, long value)
    {
        return Eventually([&] {
            for (const Event& event : Received()) {
                if (event.name == name && (!event.value.IsValid() || event.value.AsLong() == value)) {
                    return true;
                }
            }
            return false;
        });
    }

    Pavilo instrument;
};

TEST_F(InstrumentEventsTest, TheHostsServiceReceivesKeyAndConnectionEvents)
{
    Utilities::ComponentCreatorSingleton<DirectMessageService> service("MessageService", "$Revision: 1.1 $", "GUI");
    SmartPointer<InstrumentEvents_V1> events = Events();
    events->Subscribe(String("MeasurementKey"), Receive);
    events->Subscribe(String("Connection"), Receive);

    sim.Command({"press"});
    EXPECT_TRUE(ReceivedEvent("MeasurementKey", 0));
    sim.Command({"unplug"});
    EXPECT_TRUE(ReceivedEvent("Connection", 0));
    sim.Command({"plug"});
    EXPECT_TRUE(ReceivedEvent("Connection", 1));

    events->Unsubscribe(Receive);
    instrument.Close();
    std::vector<Event> all = Received();
    EXPECT_EQ(std::count_if(all.begin(), all.end(), [](const Event& e) { return e.name == "MeasurementKey"; }), 1);
}

TEST_F(InstrumentEventsTest, WithoutServiceEventsAreReadAndDropped)
{
    SmartPointer<InstrumentEvents_V1> events = Events();
    EXPECT_THROW(events->Subscribe(String("MeasurementKey"), Receive), Utilities::ExceptionNullpointer);

    sim.Command({"press"});
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    SmartPointer<HviManager::InstrumentButtons_V1> buttons =
        Utilities::SmartPointerCast<HviManager::InstrumentButtons_V1>(
            instrument.GetInterface(String("InstrumentButtons_V1")));
    EXPECT_FALSE(buttons->GetButtonStates(SmartPointer<HviManager::InstrumentButtons_V1::ButtonList>())
                     .Find(String("MeasurementKey"))
                     .IsValid());
    EXPECT_TRUE(Received().empty());
}

}
