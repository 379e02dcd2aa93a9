#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "diagnostics/String.h"
#include "tests/utilities/FailureText.h"
#include "utilities/Anything.h"
#include "utilities/AnythingLongImplementation.h"
#include "utilities/AnythingShortImplementation.h"
#include "utilities/ExceptionBusiness.h"
#include "utilities/ExceptionWrongType.h"
#include "utilities/Map.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

using Utilities::Anything;
using Utilities::AnythingLongImplementation;
using Utilities::AnythingShortImplementation;
using Utilities::ExceptionBusiness;
using Utilities::ExceptionWrongType;
using Utilities::Map;
using Utilities::String;
using Utilities::Vector;

namespace {

std::string TextOf(const Anything& value)
{
    return value.GetValueString().CString();
}

}

TEST(AnythingTest, ReadingAnotherTypeFailsWithAnEmptyText)
{
    EXPECT_TRUE(Anything(true).AsBool());
    EXPECT_EQ(Anything(short(-3)).AsShort(), -3);
    EXPECT_EQ(Anything(0.5).AsDouble(), 0.5);

    EXPECT_EQ(FailureText<ExceptionWrongType>([] { Anything(true).AsLong(); }), "");
    EXPECT_EQ(FailureText<ExceptionWrongType>([] { Anything(1L).AsDouble(); }), "");
    EXPECT_EQ(FailureText<ExceptionWrongType>([] { Anything(1L).AsShort(); }), "");
    EXPECT_EQ(FailureText<ExceptionWrongType>([] { Anything(1.0).AsLong(); }), "");
    EXPECT_EQ(FailureText<ExceptionWrongType>([] { Anything("1").AsLong(); }), "");
    EXPECT_EQ(FailureText<ExceptionWrongType>([] { Anything(1L).AsString(); }), "");
    EXPECT_EQ(FailureText<ExceptionWrongType>([] { Anything(1L).AsMap(); }), "");
    EXPECT_EQ(FailureText<ExceptionWrongType>([] { Anything(Map<String, Anything>()).AsVector(); }), "");
    EXPECT_EQ(FailureText<ExceptionBusiness>([] { Anything().AsBool(); }), "");
}

TEST(AnythingTest, EqualityNeedsTheSameTypeAndValue)
{
    EXPECT_FALSE(Anything(1L) == Anything(short(1)));
    EXPECT_FALSE(Anything(1L) == Anything(1.0));
    EXPECT_FALSE(Anything(true) == Anything(1L));
    EXPECT_FALSE(Anything() == Anything(false));
    EXPECT_TRUE(Anything() == Anything());
    EXPECT_TRUE(Anything(1L) == Anything(1L));
    EXPECT_FALSE(Anything(1L) == Anything(2L));
    EXPECT_TRUE(Anything("abc") == Anything(String("abc")));
    EXPECT_FALSE(Anything("abc") == Anything("abd"));

    Anything notANumber(std::nan(""));
    EXPECT_FALSE(notANumber == notANumber);
    EXPECT_FALSE(Anything(std::nan("")) == Anything(std::nan("")));
}

TEST(AnythingTest, MapsCompareByContentAndVectorsInOrder)
{
    Map<String, Anything> first;
    first[String("A")] = Anything(1L);
    first[String("v")] = Anything("text");
    Map<String, Anything> second;
    second[String("v")] = Anything("text");
    second[String("A")] = Anything(1L);
    EXPECT_TRUE(Anything(first) == Anything(second));
    second[String("A")] = Anything(short(1));
    EXPECT_FALSE(Anything(first) == Anything(second));

    Vector<Anything> left(2);
    left[0] = Anything(1L);
    left[1] = Anything(2L);
    Vector<Anything> right(2);
    right[0] = Anything(1L);
    right[1] = Anything(2L);
    EXPECT_TRUE(Anything(left) == Anything(right));
    right[0] = Anything(2L);
    right[1] = Anything(1L);
    EXPECT_FALSE(Anything(left) == Anything(right));
    EXPECT_FALSE(Anything(left) == Anything(first));
}

TEST(AnythingTest, CopiesShareTheBody)
{
    Anything source(Map<String, Anything>{});
    Anything copy = source;
    source.AsMap()[String("added")] = Anything(3L);
    EXPECT_EQ(copy.AsMap().Size(), 1u);
    EXPECT_EQ(copy.AsMap()[String("added")].AsLong(), 3);

    Anything assigned(1L);
    assigned = copy;
    assigned.AsMap()[String("more")] = Anything(true);
    EXPECT_EQ(source.AsMap().Size(), 2u);
    const Anything& alias = assigned;
    assigned = alias;
    EXPECT_EQ(assigned.AsMap().Size(), 2u);

    Vector<Anything> elements(1);
    elements[0] = source;
    Anything list(elements);
    list.AsVector()[0].AsMap()[String("deep")] = Anything(2.0);
    EXPECT_EQ(source.AsMap().Size(), 3u);
    EXPECT_FALSE(elements[0] == Anything(Map<String, Anything>()));
    list.AsVector()[0] = Anything(5L);
    EXPECT_TRUE(elements[0] == source);

    // Only the body is shared: the container that a value is built from is copied.
    Map<String, Anything> entries;
    Anything built(entries);
    entries[String("two")] = Anything(2L);
    EXPECT_EQ(built.AsMap().Size(), 0u);
}

TEST(AnythingTest, TextForms)
{
    EXPECT_FALSE(Anything().IsValid());
    EXPECT_TRUE(Anything(0L).IsValid());
    EXPECT_EQ(TextOf(Anything()), "AnythingEmpty");
    EXPECT_EQ(TextOf(Anything(true)), "true");
    EXPECT_EQ(TextOf(Anything(false)), "false");
    EXPECT_EQ(TextOf(Anything(short(-32768))), "-32768");
    EXPECT_EQ(TextOf(Anything(-2147483647L)), "-2147483647");
    EXPECT_EQ(TextOf(Anything(1.0 / 3.0)), "0.333333333333333");
    EXPECT_EQ(TextOf(Anything(1e20)), "1e+20");
    EXPECT_EQ(TextOf(Anything("some text")), "some text");
}

TEST(AnythingTest, BodyAssignmentCopiesOnlyTheSameType)
{
    AnythingLongImplementation target(1L);
    Utilities::AnythingImplementationBase& asBase = target;
    asBase = AnythingLongImplementation(9L);
    EXPECT_EQ(target.AsLong(), 9);

    EXPECT_EQ(FailureText<ExceptionWrongType>([&] { asBase = AnythingShortImplementation(9); }), "");
    EXPECT_EQ(target.AsLong(), 9);
}
