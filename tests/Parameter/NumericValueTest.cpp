#include "SignalLog.h"
#include "TestHelpers.h"

#include <Core/Common/Parameter/C_Double.h>
#include <Core/Common/Parameter/C_Integer.h>
#include <Core/Common/Parameter/C_Text.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <type_traits>

using namespace RTE::Parameter;

namespace
{

// Every signal of a number node; only C_Double has a typed precision signal.
template <typename Node, typename Value, typename Range>
void watchNumber(SignalLog& log, Node* node)
{
  log.watch(node, &C_Node::ValueChanged, "ValueChanged");
  log.watch(node, qOverload<Value>(&Node::ValueChanged), "Value");
  log.watch(node, &C_NumericValueBase::RangeChanged, "RangeChanged");
  log.watch(node, qOverload<Range>(&Node::RangeChanged), "Range");
  log.watch(node, &C_NumericValueBase::StepChanged, "StepChanged");
  log.watch(node, qOverload<Value>(&Node::StepChanged), "Step");
  log.watch(node, &C_NumericValueBase::PrecisionChanged, "PrecisionChanged");
  if constexpr (std::is_same_v<Node, C_Double>)
    log.watch(node, qOverload<uint>(&C_Double::PrecisionChanged), "Precision");
}

} // namespace

TEST(C_Double, RangeStepAndPrecisionAnnounceInOrder)
{
  auto node = CreateDouble("d", "", "", ReadWrite, 7, 0, 10, C_Double::EditorSpinBox, 2);
  SignalLog log;
  watchNumber<C_Double, double, DoubleRange>(log, node.get());

  struct Case
  {
    const char* what;
    std::function<void()> change;
    QStringList expected;
  };
  const std::vector<Case> cases{
      {"a range that excludes the value clamps it first",
       [&] { node->SetRange(0, 5); },
       {"ValueChanged()", "Value(5)", "RangeChanged()", "Range(0-5)"}},
      {"the same range again", [&] { node->SetRange(RTE::RangeDouble(0, 5)); }, {}},
      {"bounds in either order", [&] { node->SetRange(10, 0); }, {"RangeChanged()", "Range(0-10)"}},
      {"clamped up to a new minimum",
       [&] { node->SetRange(6, 8); },
       {"ValueChanged()", "Value(6)", "RangeChanged()", "Range(6-8)"}},
      {"new step", [&] { node->SetStep(0.5); }, {"StepChanged()", "Step(0.5)"}},
      {"same step", [&] { node->SetStep(0.5); }, {}},
      {"new precision", [&] { node->SetPrecision(4); }, {"PrecisionChanged()", "Precision(4)"}},
      {"same precision", [&] { node->SetPrecision(4); }, {}},
      {"same value", [&] { node->SetValue(6); }, {}},
      {"new value", [&] { node->SetValue(7.5); }, {"ValueChanged()", "Value(7.5)"}},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    c.change();
    EXPECT_EQ(log.take(), c.expected);
  }
  EXPECT_EQ(node->GetRange(), RTE::RangeDouble(6, 8));
  EXPECT_DOUBLE_EQ(node->GetStep(), 0.5);
  EXPECT_EQ(node->GetPrecision(), 4u);

  node->EnableSignals(false);
  node->SetRange(0, 1);
  node->SetStep(0.1);
  node->SetPrecision(1);
  EXPECT_TRUE(log.take().isEmpty());
  EXPECT_DOUBLE_EQ(node->GetValue(), 1.0) << "clamping still happens while silent";
}

TEST(C_Integer, RangeStepAndPrecisionSignals)
{
  auto node = CreateInteger("i", "", "", ReadWrite, 50, 0, 100, C_Integer::EditorSlider);
  SignalLog log;
  watchNumber<C_Integer, int64_t, IntegerRange>(log, node.get());

  node->SetRange(100, 60);
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Value(60)", "RangeChanged()", "Range(60-100)"}));
  node->SetStep(5);
  EXPECT_EQ(log.take(), QStringList({"StepChanged()", "Step(5)"}));
  node->SetPrecision(3);
  EXPECT_EQ(log.take(), QStringList({"PrecisionChanged()"})) << "integers carry no typed precision signal";
  EXPECT_EQ(node->GetPrecision(), 3u);
}

TEST(C_NumericValue, OutOfRangeValuesAreRefusedAndLeaveTheNodeUnchanged)
{
  auto integer = CreateInteger("i", "", "", ReadWrite, 5, 0, 10, C_Integer::EditorSpinBox);
  auto real = CreateDouble("d", "", "", ReadWrite, 0.5, -1.5, 2.25, C_Double::EditorSpinBox, 2);
  QSignalSpy integerSpy(integer.get(), &C_Node::ValueChanged);
  QSignalSpy realSpy(real.get(), &C_Node::ValueChanged);

  struct Case
  {
    const char* what;
    std::function<void()> change;
    QString expected;
  };
  const std::vector<Case> cases{
      {"integer above", [&] { integer->SetValue(11); }, "RTE::Exception: Value 11 out of range (0-10)"},
      {"integer below", [&] { integer->SetValue(-1); }, "RTE::Exception: Value -1 out of range (0-10)"},
      {"double above", [&] { real->SetValue(3); }, "RTE::Exception: Value 3 out of range (-1.5-2.25)"},
      {"double below", [&] { real->SetValue(-1.75); }, "RTE::Exception: Value -1.75 out of range (-1.5-2.25)"},
      {"NaN", [&] { real->SetValue(std::nan("")); }, "RTE::Exception: Value nan out of range (-1.5-2.25)"},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(messageOf(c.change), c.expected);
  }
  EXPECT_EQ(integer->GetValue(), 5);
  EXPECT_DOUBLE_EQ(real->GetValue(), 0.5);
  EXPECT_EQ(integerSpy.count(), 0);
  EXPECT_EQ(realSpy.count(), 0);

  // FitToRange clamps without changing the node; bounds are accepted inclusively.
  const std::vector<std::pair<long long, long long>> fits{{-1, 0}, {0, 0}, {7, 7}, {10, 10}, {99, 10}};
  for (const auto& [in, out] : fits)
    EXPECT_EQ(integer->FitToRange(in), out) << in;
  EXPECT_EQ(integer->GetValue(), 5);
  integer->SetValue(10);
  real->SetValue(-1.5);
  EXPECT_EQ(integer->GetValue(), 10);
  EXPECT_DOUBLE_EQ(real->GetValue(), -1.5);
}

TEST(C_NumericValue, FactoriesSetTheRangeBeforeTheValue)
{
  // A value applied before its range would be checked against 0-0 and fail with that text.
  EXPECT_EQ(messageOf([] { CreateDouble("d", "", "", ReadWrite, 5, 0, 1, C_Double::EditorSpinBox, 2); }),
            "RTE::Exception: Value 5 out of range (0-1)");
  EXPECT_EQ(messageOf([] { CreateInteger("i", "", "", ReadWrite, 20, 0, 10, C_Integer::EditorSpinBox); }),
            "RTE::Exception: Value 20 out of range (0-10)");

  // Bounds may come in either order.
  auto full = CreateDouble("Exposure", "Exposure time", "in ms", ReadOnly, 2.5, 10, 1, C_Double::EditorSlider, 3);
  EXPECT_EQ(full->dump(), "Name: Exposure Label: Exposure time Tooltip: in ms Access: ReadOnly Visibility: "
                          "Visible4Customer Value: 2.5 Range: 1-10 Precision: 3");
  EXPECT_EQ(full->GetPreferredEditor(), "Slider");

  auto shortDouble = CreateDouble("d", -1e300);
  EXPECT_EQ(shortDouble->GetRange(), RTE::RangeDouble(-1.7976931348623157e308, 1.7976931348623157e308));
  EXPECT_EQ(shortDouble->dump().substr(0, 43), "Name: d Label:  Tooltip:  Access: ReadWrite");
  EXPECT_EQ(shortDouble->GetPreferredEditor(), "SpinBox");
  EXPECT_EQ(shortDouble->GetPrecision(), 2u);

  auto shortInteger = CreateInteger("i", std::numeric_limits<long long>::min());
  EXPECT_EQ(shortInteger->GetRange(),
            RTE::RangeInt64(std::numeric_limits<long long>::min(), std::numeric_limits<long long>::max()));
  EXPECT_EQ(shortInteger->GetAccessMode(), ReadWrite);
  EXPECT_EQ(shortInteger->GetPreferredEditor(), "SpinBox");
  EXPECT_EQ(shortInteger->GetPrecision(), 0u);

  C_Double constructed;
  EXPECT_EQ(constructed.GetRange(), RTE::RangeDouble(0, 0));
  EXPECT_DOUBLE_EQ(constructed.GetStep(), 1.0);
  EXPECT_EQ(constructed.GetPrecision(), 2u);
  EXPECT_EQ(constructed.GetAccessMode(), UndefinedAccesMode);
}

TEST(C_NumericValue, CopyValuesTakesTheValueOfTheSameKindOnly)
{
  auto target = CreateDouble("d", "", "", ReadWrite, 1, 0, 10, C_Double::EditorSpinBox, 2);
  auto source = CreateDouble("other", "", "", ReadOnly, 4, -100, 100, C_Double::EditorSlider, 5);
  source->SetStep(0.25);
  target->CopyValues(source);
  EXPECT_DOUBLE_EQ(target->GetValue(), 4);
  EXPECT_EQ(target->GetRange(), RTE::RangeDouble(0, 10)) << "range, step and precision stay";
  EXPECT_DOUBLE_EQ(target->GetStep(), 1);
  EXPECT_EQ(target->GetPrecision(), 2u);
  EXPECT_EQ(target->GetName(), "d");

  // Another kind is ignored silently, unlike lists and texts.
  QSignalSpy spy(target.get(), &C_Node::ValueChanged);
  EXPECT_NO_THROW(target->CopyValues(CreateText("t", "", "", ReadWrite, "9", C_Text::EditorLineEdit)));
  EXPECT_NO_THROW(target->CopyValues(CreateInteger("i", 9)));
  EXPECT_DOUBLE_EQ(target->GetValue(), 4);
  EXPECT_EQ(spy.count(), 0);

  // A source value outside this node's range is refused.
  source->SetValue(50);
  EXPECT_EQ(messageOf([&] { target->CopyValues(source); }), "RTE::Exception: Value 50 out of range (0-10)");
  EXPECT_DOUBLE_EQ(target->GetValue(), 4);
}

TEST(C_NumericValue, EqualityTextsAndDump)
{
  auto a = CreateDouble("d", "", "", ReadWrite, 1, 0, 10, C_Double::EditorSpinBox, 2);
  struct Case
  {
    const char* what;
    std::function<void(C_Double&)> change;
  };
  const std::vector<Case> cases{
      {"value", [](C_Double& d) { d.SetValue(2); }},         {"minimum", [](C_Double& d) { d.SetRange(-1, 10); }},
      {"maximum", [](C_Double& d) { d.SetRange(0, 11); }},   {"step", [](C_Double& d) { d.SetStep(2); }},
      {"precision", [](C_Double& d) { d.SetPrecision(3); }}, {"label", [](C_Double& d) { d.SetLabel("x"); }}};
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    auto b = CreateDouble("d", "", "", ReadWrite, 1, 0, 10, C_Double::EditorSpinBox, 2);
    EXPECT_TRUE(*a == *b);
    c.change(*b);
    EXPECT_FALSE(*a == *b);
    EXPECT_TRUE(*a != *b);
  }
  auto integer = CreateInteger("d", "", "", ReadWrite, 1, 0, 10, C_Integer::EditorSpinBox);
  integer->SetPrecision(2);
  EXPECT_FALSE(*a == static_cast<const C_Node&>(*integer));

  auto d = CreateDouble("d", "L", "T", ReadWrite, 1.23456789, 1e-7, 10, C_Double::EditorSpinBox, 2);
  EXPECT_EQ(d->toString(), "1.23457");
  EXPECT_EQ(d->toQVariant(), QVariant(1.23456789));
  EXPECT_EQ(d->dump(), "Name: d Label: L Tooltip: T Access: ReadWrite Visibility: Visible4Customer Value: 1.23457 "
                       "Range: 1e-07-10 Precision: 2");
  std::ostringstream streamed;
  streamed << *d;
  EXPECT_EQ(streamed.str(), d->dump());

  EXPECT_EQ(integer->toString(), "1");
  EXPECT_EQ(integer->toQVariant(), QVariant(qlonglong(1)));
  EXPECT_EQ(
      integer->dump(),
      "Name: d Label:  Tooltip:  Access: ReadWrite Visibility: Visible4Customer Value: 1 Range: 0-10 Precision: 2");
}
