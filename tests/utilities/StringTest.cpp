#include "tests/support/HeapAllocationCounter.h"
#include "tests/utilities/FailureText.h"

#include "diagnostics/String.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/String.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using Utilities::ExceptionOutOfBound;
using Utilities::String;

namespace {

bool LivesInside(const String& text)
{
    const auto* object = reinterpret_cast<const char*>(&text);
    return text.CString() >= object && text.CString() < object + sizeof text;
}

template<class Conversion>
std::string ConversionFailure(Conversion conversion)
{
    return FailureText<ExceptionOutOfBound>(conversion);
}

}

TEST(StringTest, ConstructorsMakeTheirTexts)
{
    EXPECT_STREQ("", String().CString());
    EXPECT_STREQ("", String(static_cast<const char*>(nullptr)).CString());
    EXPECT_STREQ("", String('\0').CString());
    EXPECT_TRUE(String('\0').IsEmpty());
    EXPECT_STREQ("x", String('x').CString());
    EXPECT_STREQ("-2147483648", String(-2147483648L).CString());
    EXPECT_STREQ("-7", String(-7).CString());
    EXPECT_STREQ("-32768", String(static_cast<short>(-32768)).CString());
    EXPECT_STREQ("65535", String(static_cast<unsigned short>(65535)).CString());
    EXPECT_STREQ("4294967295", String(4294967295UL).CString());
    EXPECT_STREQ("with std", String(std::string("with std")).CString());
    EXPECT_STREQ("to diagnostics", String("to diagnostics").ToDiagnostics().CString());
}

TEST(StringTest, TextsBelowTwentyCharactersStayInsideTheObjectWithoutHeap)
{
    using HeapAllocationCounter::AllocationsOf;
    EXPECT_EQ(0u, AllocationsOf([] { String text("1234567890123456789"); }));
    EXPECT_EQ(1u, AllocationsOf([] { String text("12345678901234567890"); }));
    EXPECT_EQ(0u, AllocationsOf([] { String text(-123456789L); }));
    EXPECT_EQ(0u, AllocationsOf([] { String text(2.5, 3, '.'); }));
    const String source("Observer");
    EXPECT_EQ(0u, AllocationsOf([&] {
        String copy(source);
        copy += String(".D50");
        String part = copy.SubString(2, 4);
        copy = part + source;
    }));

    String growing("123456789012345678");
    growing += String("9");
    EXPECT_TRUE(LivesInside(growing));
    growing += String("0");
    EXPECT_FALSE(LivesInside(growing));
    EXPECT_STREQ("12345678901234567890", growing.CString());

    String assigned(growing);
    assigned = String("1234567890123456789");
    EXPECT_TRUE(LivesInside(assigned));
    EXPECT_STREQ("1234567890123456789", assigned.CString());
}

TEST(StringTest, StampsOfCopiesAppendsAndSums)
{
    const String original("Measurement");
    String copy(original);
    EXPECT_EQ(original.Stamp(), copy.Stamp());
    EXPECT_NE(original.Stamp(), String("Measurement").Stamp());
    String assigned;
    assigned = original;
    EXPECT_EQ(original.Stamp(), assigned.Stamp());

    // Equal stamps settle inequality without the bytes: a change behind the back stays unseen.
    const_cast<char*>(copy.CString())[0] = 'X';
    EXPECT_FALSE(original != copy);
    EXPECT_FALSE(original == copy);
    EXPECT_FALSE(original != String("Measurement"));

    String appended(original);
    appended += String("x");
    EXPECT_NE(original.Stamp(), appended.Stamp());
    EXPECT_TRUE(original != appended);

    // Appending nothing keeps the stamp, a sum with an empty text is the other text.
    const uint32_t before = appended.Stamp();
    appended += String();
    EXPECT_EQ(before, appended.Stamp());
    const String empty;
    EXPECT_EQ(appended.Stamp(), (appended + empty).Stamp());
    EXPECT_EQ(appended.Stamp(), (empty + appended).Stamp());
    const String sum = appended + appended;
    EXPECT_STREQ("MeasurementxMeasurementx", sum.CString());
    EXPECT_NE(appended.Stamp(), sum.Stamp());

    String self("ab");
    self += self;
    EXPECT_STREQ("abab", self.CString());
    String longSelf("0123456789");
    longSelf += longSelf;
    EXPECT_STREQ("01234567890123456789", longSelf.CString());
}

TEST(StringTest, Comparisons)
{
    EXPECT_TRUE(String("abc") == String("abc"));
    EXPECT_FALSE(String("abc") == String("abcd"));
    EXPECT_TRUE(String("abc") < String("abd"));
    EXPECT_TRUE(String("ab") < String("abc"));
    EXPECT_FALSE(String("b") < String("abc"));
    EXPECT_TRUE(String() == String(""));
}

TEST(StringTest, FindCharactersAndPatterns)
{
    const String text("a.b.c");
    EXPECT_EQ(1, text.Find('.'));
    EXPECT_EQ(3, text.Find('.', 2));
    EXPECT_EQ(-1, text.Find('.', 4));
    EXPECT_EQ(-1, text.Find('.', 99));
    EXPECT_EQ(-1, String().Find('a'));

    EXPECT_EQ(3, text.FindReverse('.'));
    EXPECT_EQ(1, text.FindReverse('.', 2));
    EXPECT_EQ(3, text.FindReverse('.', 99));
    EXPECT_EQ(-1, text.FindReverse('x'));
    EXPECT_EQ(-1, String().FindReverse('a'));

    const String sentence("abcabd abd");
    EXPECT_EQ(3, sentence.Find(String("abd")));
    EXPECT_EQ(7, sentence.Find(String("abd"), 4));
    EXPECT_EQ(-1, sentence.Find(String("abd"), 8));
    EXPECT_EQ(-1, sentence.Find(String("abdx")));
    EXPECT_EQ(5, sentence.Find(String(), 5));
}

TEST(StringTest, SubString)
{
    const String text("Colorimetric");
    EXPECT_STREQ("lor", text.SubString(2, 3).CString());
    EXPECT_STREQ("metric", text.SubString(6).CString());
    EXPECT_STREQ("metric", text.SubString(6, 100).CString());
    EXPECT_TRUE(text.SubString(12).IsEmpty());
    EXPECT_TRUE(text.SubString(40, 2).IsEmpty());
}

TEST(StringTest, Tokens)
{
    const String text("a,bc,,d,");
    EXPECT_EQ(5u, text.TokenCount(','));
    EXPECT_STREQ("a", text.Token(0, ',').CString());
    EXPECT_STREQ("bc", text.Token(1, ',').CString());
    EXPECT_STREQ("", text.Token(2, ',').CString());
    EXPECT_STREQ("d", text.Token(3, ',').CString());
    EXPECT_STREQ("", text.Token(4, ',').CString());
    EXPECT_EQ("String empty", ConversionFailure([&] { text.Token(5, ','); }));

    EXPECT_EQ(0u, String().TokenCount(','));
    EXPECT_TRUE(String().Token(0, ',').IsEmpty());
    EXPECT_EQ("String empty", ConversionFailure([] { String().Token(1, ','); }));

    const String key("Colorimetric.Illumination.D50");
    EXPECT_STREQ("Colorimetric", key.FirstTokens(0, '.').CString());
    EXPECT_STREQ("Colorimetric.Illumination", key.FirstTokens(1, '.').CString());
    EXPECT_STREQ("Illumination.D50", key.LastTokens(1, '.').CString());
    EXPECT_STREQ("D50", key.LastTokens(2, '.').CString());
    EXPECT_EQ("Token number too large", ConversionFailure([&] { key.FirstTokens(3, '.'); }));
    EXPECT_EQ("Token number too large", ConversionFailure([&] { key.LastTokens(3, '.'); }));
    EXPECT_EQ("Token number too large", ConversionFailure([] { String().FirstTokens(0, '.'); }));
}

TEST(StringTest, ReplaceEveryOccurrenceOnce)
{
    String message("%VALUE% is not %VALUE%");
    message.Replace(String("%VALUE%"), String("<%VALUE%>"));
    EXPECT_STREQ("<%VALUE%> is not <%VALUE%>", message.CString());

    String overlapping("aaaaa");
    overlapping.Replace(String("aa"), String("b"));
    EXPECT_STREQ("bba", overlapping.CString());

    String removed("File open failed:%FILENAME% ");
    removed.Replace(String("%FILENAME%"), String());
    EXPECT_STREQ("File open failed: ", removed.CString());

    String unchanged("no placeholder");
    const uint32_t before = unchanged.Stamp();
    unchanged.Replace(String("%KEY%"), String("x"));
    EXPECT_STREQ("no placeholder", unchanged.CString());
    EXPECT_NE(before, unchanged.Stamp());

    String empty;
    const uint32_t emptyBefore = empty.Stamp();
    empty.Replace(String("a"), String("b"));
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_NE(emptyBefore, empty.Stamp());

    String self("abc");
    self.Replace(self, String("xyz"));
    EXPECT_STREQ("xyz", self.CString());
}

TEST(StringTest, UpperAndLowerCaseMakeNewTexts)
{
    const String text("Mixed Case 1");
    const String upper = text.ToUpper();
    EXPECT_STREQ("MIXED CASE 1", upper.CString());
    EXPECT_STREQ("mixed case 1", text.ToLower().CString());
    EXPECT_STREQ("Mixed Case 1", text.CString());
    EXPECT_NE(text.Stamp(), upper.Stamp());
}

TEST(StringTest, ShortConversion)
{
    EXPECT_EQ(0, String("0").ToShort());
    EXPECT_EQ(0, String("-0").ToShort());
    EXPECT_EQ(-32768, String("  -32768").ToShort());
    EXPECT_EQ(32767, String("32767").ToShort());
    EXPECT_EQ(-12, String("-12abc").ToShort());
    EXPECT_EQ("32768 is to big for a short.", ConversionFailure([] { String("32768").ToShort(); }));
    EXPECT_EQ("-32769 is to big for a short.", ConversionFailure([] { String("-32769").ToShort(); }));
    EXPECT_EQ("- is not a valid number.", ConversionFailure([] { String("-").ToShort(); }));
    EXPECT_EQ(" is not a valid number.", ConversionFailure([] { String("").ToShort(); }));
    EXPECT_EQ("\t-1 is not a valid number.", ConversionFailure([] { String("\t-1").ToShort(); }));
}

TEST(StringTest, UnsignedConversions)
{
    EXPECT_EQ(4294967295UL, String("4294967295").ToUnsignedLong());
    EXPECT_EQ(12UL, String(" \t12abc").ToUnsignedLong());
    EXPECT_EQ(0UL, String("+").ToUnsignedLong());
    EXPECT_EQ(0UL, String("+x").ToUnsignedLong());
    EXPECT_EQ(7UL, String("+7").ToUnsignedLong());
    EXPECT_EQ(
        "4294967296 is to big for an unsigned long.", ConversionFailure([] { String("4294967296").ToUnsignedLong(); }));
    EXPECT_EQ(
        "4294967300 is to big for an unsigned long.", ConversionFailure([] { String("4294967300").ToUnsignedLong(); }));
    EXPECT_EQ("x1 is not a valid number.", ConversionFailure([] { String("x1").ToUnsignedLong(); }));

    EXPECT_EQ(65535, String("65535").ToUnsignedShort());
    EXPECT_EQ("65536 is to big for a short.", ConversionFailure([] { String("65536").ToUnsignedShort(); }));
    EXPECT_EQ("-1 is not a valid number.", ConversionFailure([] { String("-1").ToUnsignedShort(); }));
}

TEST(StringTest, LongAndDoubleConversions)
{
    EXPECT_EQ(-2147483648L, String("-2147483648").ToLong());
    EXPECT_EQ(2147483647L, String(" 2147483647").ToLong());
    EXPECT_EQ("2147483648 is to big for a long.", ConversionFailure([] { String("2147483648").ToLong(); }));
    EXPECT_EQ("99999999999 is to big for an unsigned long.", ConversionFailure([] { String("99999999999").ToLong(); }));

    EXPECT_DOUBLE_EQ(2.5, String("2.5").ToDouble());
    EXPECT_DOUBLE_EQ(-1e3, String("-1e3xyz").ToDouble());
    EXPECT_DOUBLE_EQ(0.0, String("abc").ToDouble());
}

TEST(StringTest, FixedPointTextOfADouble)
{
    EXPECT_STREQ("3.14", String(3.14159, 2, '.').CString());
    EXPECT_STREQ("0,3", String(0.25, 1, ',').CString());
    EXPECT_STREQ("1", String(0.5, 0, '.').CString());
    EXPECT_STREQ("0.000", String(0.0, 3, '.').CString());
    EXPECT_STREQ("-12.3", String(-12.345, 1, '.').CString());
    EXPECT_STREQ("0.00", String(-0.001, 2, '.').CString());
    EXPECT_STREQ("1000000000000000", String(1e15, 0, '.').CString());
    EXPECT_STREQ("1.00E+20", String(1e20, 2, '.').CString());
    EXPECT_STREQ("-2.5E+17", String(-2.5e17, 1, '.').CString());
}

TEST(StringTest, HashOfAKey)
{
    EXPECT_EQ(0u, String().Hash(53));
    EXPECT_EQ(52u, String("ab").Hash(53));
    EXPECT_EQ(28u, String("Colorimetric.Illumination").Hash(53));
    // Bytes count as signed: 0xFF adds -1, which wraps to 4294967295.
    EXPECT_EQ(41u, String("\xff").Hash(53));
}
