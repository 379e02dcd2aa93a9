#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "manager/InstrumentEvents_V1.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/ExceptionOutOfBound.h"

namespace HviManagerTest {

using HviManager::InstrumentButtons_V1;
using HviManager::InstrumentEvents_V1;
using Utilities::Anything;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

// Answers a key press at every question and fails every other one, and remembers what was asked.
class ScriptedButtons : public InstrumentButtons_V1 {
public:
    SmartPointer<ButtonList> GetAvailableButtons() override { return SmartPointer<ButtonList>(); }
    SmartPointer<ButtonList> GetSelection() override { return SmartPointer<ButtonList>(); }
    void SetSelection(const SmartPointer<ButtonList>&) override { }

    ButtonStates GetButtonStates(const SmartPointer<ButtonList>& buttons) override
    {
        std::lock_guard<std::mutex> guard(lock);
        asked.push_back(buttons.IsNull() ? std::string("all") : buttons->Begin()->ToStdString());
        if (++questions % 2 == 0) {
            throw Utilities::ExceptionOutOfBound("Measurement handle is not open!");
        }
        ButtonStates states;
        states[String("MeasurementKey")] = Anything();
        return states;
    }

    std::vector<std::string> Asked()
    {
        std::lock_guard<std::mutex> guard(lock);
        return asked;
    }

private:
    std::mutex lock;
    int questions = 0;
    std::vector<std::string> asked;
};

std::atomic<int> posted{0};

class CountingMessageService : public GUI::MessageService {
public:
    Diagnostics::String GetValueString() const override { return Diagnostics::String(); }
    void Post(const String&, const Anything&) override { ++posted; }
    void Subscribe(const String&, Callback) override { }
    void Unsubscribe(Callback) override { }
};

void Ignore(const String&, const Anything&) { }

}

TEST(InstrumentEventsSubscriptionTest, KeySubscriptionClearsAnOldPressAndPollingSurvivesFailures)
{
    Utilities::ComponentCreatorSingleton<CountingMessageService> service("MessageService", "$Revision: 1.1 $", "GUI");
    SmartPointer<ScriptedButtons> buttons(new ScriptedButtons());
    InstrumentEvents_V1 events(buttons);
    events.StopWatching();

    events.Subscribe(String("Connection"), Ignore);
    EXPECT_TRUE(buttons->Asked().empty());
    events.Subscribe(String("MeasurementKey"), Ignore);
    EXPECT_EQ(buttons->Asked(), std::vector<std::string>{"MeasurementKey"});

    posted = 0;
    events.StartWatching();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (buttons->Asked().size() < 5 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    events.StopWatching();
    // Every other poll fails; the others post their key press.
    const std::size_t polls = buttons->Asked().size() - 1;
    ASSERT_GE(polls, 4u);
    EXPECT_EQ(posted.load(), static_cast<int>(polls / 2));
}

}
