#include "tests/support/HeapAllocationCounter.h"

#include "diagnostics/String.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using Diagnostics::String;

TEST(DiagnosticsStringTest, TextsOfNumbersAndValues)
{
    EXPECT_STREQ("-5", String(-5).CString());
    EXPECT_STREQ("-2147483648", String(-2147483648L).CString());
    EXPECT_STREQ("-32768", String(static_cast<short>(-32768)).CString());
    EXPECT_STREQ("4294967295", String(4294967295UL).CString());
    EXPECT_STREQ("65535", String(static_cast<unsigned short>(65535)).CString());
    EXPECT_STREQ("0.1", String(0.1).CString());
    EXPECT_STREQ("0.333333333333333", String(1.0 / 3.0).CString());
    EXPECT_STREQ("0.100000001490116", String(0.1f).CString());
    EXPECT_STREQ("1e+20", String(1e20).CString());
    EXPECT_STREQ("true", String(true).CString());
    EXPECT_STREQ("false", String(false).CString());
    EXPECT_STREQ("0x1af0", String(reinterpret_cast<const void*>(0x1af0)).CString());
    EXPECT_STREQ("", String(static_cast<const void*>(nullptr)).CString());
    EXPECT_STREQ("", String(static_cast<const char*>(nullptr)).CString());
}

TEST(DiagnosticsStringTest, AppendCompareAndClear)
{
    String text("Vector size: ");
    text += 100L;
    text += ", ";
    text += String("full");
    EXPECT_STREQ("Vector size: 100, full", text.CString());
    EXPECT_EQ('\0', text[22]);
    EXPECT_EQ('\0', text[1000]);

    EXPECT_FALSE(String("same") == String("other"));
    EXPECT_TRUE(String() == String(""));
    EXPECT_TRUE(String("x") != String());

    text += text;
    EXPECT_STREQ("Vector size: 100, fullVector size: 100, full", text.CString());
    text.Clear();
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_STREQ("", text.CString());
}

TEST(DiagnosticsStringTest, TextsStopAt255Characters)
{
    const std::string long300(300, 'q');
    const String text(long300.c_str());
    EXPECT_EQ(255u, text.Length());
    EXPECT_EQ(long300.substr(0, 255), text.CString());

    String full(std::string(250, 'a').c_str());
    full += "bcdefghij";
    EXPECT_EQ(std::string(250, 'a') + "bcdef", full.CString());
    full += 12345L;
    EXPECT_EQ(255u, full.Length());
}

TEST(DiagnosticsStringTest, ChangingACopyLeavesItsSource)
{
    const String source("source");
    String copy(source);
    EXPECT_EQ(source.CString(), copy.CString());
    copy += " changed";
    EXPECT_STREQ("source", source.CString());
    EXPECT_STREQ("source changed", copy.CString());

    String assigned;
    assigned = source;
    assigned.Clear();
    EXPECT_STREQ("source", source.CString());
    const String& alias = assigned;
    assigned = alias;
    EXPECT_TRUE(assigned.IsEmpty());
}

TEST(DiagnosticsStringTest, TextsComeFromThePoolWithoutHeap)
{
    using HeapAllocationCounter::AllocationsOf;
    String warmUp("the first text of a thread brings its pool");
    EXPECT_EQ(0u, AllocationsOf([] {
        for (int i = 0; i < 1000; ++i) {
            String text("Trace: ");
            text += static_cast<long>(i);
            String copy = text + String(" done");
        }
    }));
}

TEST(DiagnosticsStringTest, MoreLiveTextsThanThePoolHoldsStayIntact)
{
    std::vector<String> texts;
    for (long i = 0; i < 300; ++i) {
        texts.emplace_back(i);
    }
    for (long i = 0; i < 300; ++i) {
        EXPECT_STREQ(std::to_string(i).c_str(), texts[static_cast<size_t>(i)].CString());
    }
}

TEST(DiagnosticsStringTest, TextsTravelBetweenThreads)
{
    String madeHere("made on the main thread");
    std::thread([copy = madeHere]() mutable { copy += " and changed there"; }).join();
    EXPECT_STREQ("made on the main thread", madeHere.CString());

    // The thread ends while its text lives on.
    String madeThere;
    std::thread([&madeThere] { madeThere = String("made on a worker") + String(" thread"); }).join();
    EXPECT_STREQ("made on a worker thread", madeThere.CString());
    madeThere += ", kept here";
    EXPECT_STREQ("made on a worker thread, kept here", madeThere.CString());
}

TEST(DiagnosticsStringTest, ThreadsShareCopiesConcurrently)
{
    const String shared("shared by every thread");
    std::vector<std::thread> threads;
    std::vector<std::vector<String>> handedBack(4);
    for (size_t t = 0; t < handedBack.size(); ++t) {
        threads.emplace_back([&shared, &result = handedBack[t]] {
            for (long i = 0; i < 200; ++i) {
                String copy(shared);
                copy += i;
                result.push_back(copy);
                result.push_back(shared);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (const auto& texts : handedBack) {
        ASSERT_EQ(400u, texts.size());
        EXPECT_STREQ("shared by every thread199", texts[398].CString());
        EXPECT_TRUE(texts[399] == shared);
    }
}
