// The node signals must reach objects in other threads through queued connections.
#include <Core/Common/Parameter/C_Bool.h>
#include <Core/Common/Parameter/C_Category.h>
#include <Core/Common/Parameter/C_Double.h>
#include <Core/Common/Parameter/C_DoubleList.h>
#include <Core/Common/Parameter/C_Enumeration.h>
#include <Core/Common/Parameter/C_Integer.h>
#include <Core/Common/Parameter/C_IntegerList.h>
#include <Core/Common/Parameter/C_Text.h>
#include <Core/Common/Parameter/C_TextList.h>
#include <Core/Common/Parameter/LegacySignalBridge.h>

#include <QMetaType>
#include <QMutex>
#include <QSemaphore>
#include <QThread>
#include <QVariant>

#include <gtest/gtest.h>

using namespace RTE::Parameter;

namespace
{

// Connected by signature text, so the signal's argument names must resolve by name.
class NamedSlots : public QObject
{
  Q_OBJECT

public:
  QSemaphore arrived;
  QMutex mutex;
  QStringList received;

public slots:
  void onAccessMode(RTE::Parameter::E_AccessMode mode) { record(QString::number(mode)); }
  void onRange(RTE::Parameter::DoubleRange range)
  {
    record(QString::number(range.minimum) + "-" + QString::number(range.maximum));
  }
  void onEntry(RTE::Parameter::EnumerationEntry entry) { record(entry->GetName()); }

private:
  void record(const QString& text)
  {
    QMutexLocker lock(&mutex);
    received << text + (QThread::currentThread() == thread() ? "@worker" : "@elsewhere");
    arrived.release();
  }
};

} // namespace

TEST(ParameterMetaTypes, NamesResolveToTheirTypes)
{
  // The constructors register the names.
  C_Category category;
  C_Bool flag;
  C_Integer integer;
  C_Double real;
  C_IntegerList integers;
  C_DoubleList reals;
  C_Text text;
  C_TextList texts;
  C_Enumeration enumeration;

  const std::vector<std::pair<const char*, QMetaType>> names{
      {"RTE::Parameter::Node", QMetaType::fromType<std::shared_ptr<C_Node>>()},
      {"std::shared_ptr<RTE::Parameter::C_Node>", QMetaType::fromType<std::shared_ptr<C_Node>>()},
      {"RTE::Parameter::E_AccessMode", QMetaType::fromType<E_AccessMode>()},
      {"RTE::Parameter::E_VisibilityLevel", QMetaType::fromType<E_VisibilityLevel>()},
      {"RTE::Parameter::Bool", QMetaType::fromType<std::shared_ptr<C_Bool>>()},
      {"RTE::Parameter::Integer", QMetaType::fromType<std::shared_ptr<C_Integer>>()},
      {"RTE::Parameter::Double", QMetaType::fromType<std::shared_ptr<C_Double>>()},
      {"std::shared_ptr<RTE::Parameter::C_Double>", QMetaType::fromType<std::shared_ptr<C_Double>>()},
      {"RTE::Parameter::IntegerList", QMetaType::fromType<std::shared_ptr<C_IntegerList>>()},
      {"RTE::Parameter::DoubleList", QMetaType::fromType<std::shared_ptr<C_DoubleList>>()},
      {"RTE::Parameter::Text", QMetaType::fromType<std::shared_ptr<C_Text>>()},
      {"RTE::Parameter::TextList", QMetaType::fromType<std::shared_ptr<C_TextList>>()},
      {"RTE::Parameter::IntegerRange", QMetaType::fromType<RTE::RangeT<qlonglong>>()},
      {"RTE::RangeInt64", QMetaType::fromType<RTE::RangeT<qlonglong>>()},
      {"RTE::RangeT<qlonglong>", QMetaType::fromType<RTE::RangeT<qlonglong>>()},
      {"RTE::Parameter::DoubleRange", QMetaType::fromType<RTE::RangeT<double>>()},
      {"RTE::RangeDouble", QMetaType::fromType<RTE::RangeT<double>>()},
      {"RTE::Parameter::Enumeration", QMetaType::fromType<std::shared_ptr<C_Enumeration>>()},
      {"RTE::Parameter::EnumerationEntry", QMetaType::fromType<std::shared_ptr<C_EnumerationEntry>>()},
      {"RTE::Parameter::EnumerationEntries", QMetaType::fromType<EnumerationEntries>()},
  };
  for (const auto& [name, type] : names)
  {
    SCOPED_TRACE(name);
    EXPECT_TRUE(QMetaType::fromName(name).isValid());
    EXPECT_EQ(QMetaType::fromName(name), type);
  }

  // Nodes travel in QVariant as shared pointers.
  std::shared_ptr<C_Node> node = CreateBool("b", true);
  const QVariant variant = QVariant::fromValue(node);
  EXPECT_EQ(variant.value<Node>().get(), node.get());

  LegacySignalBridge bridge;
  EXPECT_NE(qobject_cast<QObject*>(&bridge), nullptr);
}

TEST(ParameterMetaTypes, SignalsAreQueuedToAnotherThread)
{
  QThread worker;
  worker.start();
  NamedSlots named;
  named.moveToThread(&worker);
  QObject functorContext;
  functorContext.moveToThread(&worker);

  auto real = CreateDouble("d", "", "", ReadWrite, 1, 0, 10, C_Double::EditorSpinBox, 2);
  auto integers = CreateIntegerList("l", 2, "", "", ReadWrite, 0, 0, 10, C_IntegerList::EditorTreeView);
  auto enumeration = CreateEnumeration("e", "", "", C_Enumeration::EditorComboBox);
  auto flag = CreateBool("f", false);

  ASSERT_TRUE(QObject::connect(real.get(), SIGNAL(RangeChanged(RTE::Parameter::DoubleRange)), &named,
                               SLOT(onRange(RTE::Parameter::DoubleRange))));
  ASSERT_TRUE(QObject::connect(flag.get(), SIGNAL(AccessModeChanged(RTE::Parameter::E_AccessMode)), &named,
                               SLOT(onAccessMode(RTE::Parameter::E_AccessMode))));
  ASSERT_TRUE(QObject::connect(enumeration.get(), SIGNAL(CurrentEntryChanged(RTE::Parameter::EnumerationEntry)), &named,
                               SLOT(onEntry(RTE::Parameter::EnumerationEntry))));

  QMutex mutex;
  QStringList functorEvents;
  QSemaphore functorArrived;
  auto record = [&](const QString& text)
  {
    QMutexLocker lock(&mutex);
    functorEvents << text + (QThread::currentThread() == &worker ? "@worker" : "@elsewhere");
    functorArrived.release();
  };
  QObject::connect(integers.get(), qOverload<std::vector<int64_t>>(&C_IntegerList::ValueChanged), &functorContext,
                   [&](std::vector<int64_t> values) { record("list " + QString::number(values.at(1))); });
  QObject::connect(enumeration.get(), &C_Enumeration::EntriesChanged, &functorContext,
                   [&](EnumerationEntries entries) { record("entries " + QString::number(entries.size())); });
  QObject::connect(real.get(), qOverload<double>(&C_Double::ValueChanged), &functorContext,
                   [&](double value) { record("value " + QString::number(value)); });

  real->SetRange(5, 8);
  flag->SetAccessMode(ReadOnly);
  enumeration->AddEntry(Private::CreateEnumerationEntry("One", "", "", 1));
  integers->SetValue(1, 7);

  ASSERT_TRUE(named.arrived.tryAcquire(3, 5000));
  ASSERT_TRUE(functorArrived.tryAcquire(3, 5000));
  worker.quit();
  worker.wait();

  EXPECT_EQ(named.received, QStringList({"5-8@worker", "1@worker", "One@worker"}));
  EXPECT_EQ(functorEvents, QStringList({"value 5@worker", "entries 1@worker", "list 7@worker"}));
}

#include "MetaTypesTest.moc"
