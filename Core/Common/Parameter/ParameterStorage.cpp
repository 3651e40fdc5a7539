#include <Core/Common/Parameter/ParameterStorage.h>

#include "ParameterLog_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>
#include <Core/Common/Storage/StorageExceptions.h>
#include <Core/Common/Storage/ValueSerialization.h>

#include <QHash>
#include <QSet>

#include <algorithm>
#include <vector>

namespace Storage
{

namespace
{

using namespace RTE::Parameter;
using Nodes = std::vector<std::shared_ptr<C_Node>>;

const QString& itemName()
{
  static const QString name = QStringLiteral("item");
  return name;
}

QString translate(const char* text)
{
  return QCoreApplication::translate("Storage", text);
}

[[noreturn]] void raiseUnsupported(const QString& typeName,
                                   const std::source_location& where = std::source_location::current())
{
  RTE::Raise(UnsupportedNodeTypeError(translate("Unsupported parameter node type '%1'").arg(typeName)), where);
}

// ---------------------------------------------------------------------------- writing

class Writer;
using WriteKind = void (*)(Writer&, Settings&, const C_Node&);

// Writes nodes by kind; remembers the nodes on the way down so that a node holding
// itself fails instead of recursing without end.
class Writer
{
public:
  void writeNode(Settings& settings, const std::shared_ptr<C_Node>& node);
  void writeList(Settings& parent, const QString& name, const Nodes& nodes);

private:
  std::vector<const C_Node*> m_path;
};

void writeCommon(Settings& settings, const C_Node& node)
{
  settings.SetClass(node.GetTypeName());
  settings.Set(QStringLiteral("Label"), node.GetLabel());
  settings.Set(QStringLiteral("Name"), node.GetName());
  settings.Set(QStringLiteral("Description"), node.GetDescription());
  settings.Set(QStringLiteral("AccessMode"), static_cast<int>(node.GetAccessMode()));
  settings.Set(QStringLiteral("VisibilityLevel"), static_cast<int>(node.GetVisibilityLevel()));
}

void writeCategory(Writer& writer, Settings& settings, const C_Node& node)
{
  const auto& category = static_cast<const C_Category&>(node);
  const auto children = category.GetChildList();
  writer.writeList(settings, QStringLiteral("ChildList"), Nodes(children.begin(), children.end()));
}

void writeBool(Writer&, Settings& settings, const C_Node& node)
{
  settings.Set(QStringLiteral("Value"), static_cast<const C_Bool&>(node).GetValue());
}

template <typename Kind>
void writeNumber(Writer&, Settings& settings, const C_Node& node)
{
  const auto& number = static_cast<const Kind&>(node);
  settings.Set(QStringLiteral("Value"), number.GetValue());
  settings.Set(QStringLiteral("Min"), number.GetRange().minimum);
  settings.Set(QStringLiteral("Max"), number.GetRange().maximum);
  settings.Set(QStringLiteral("Step"), number.GetStep());
}

template <typename Kind>
void writeNumberList(Writer&, Settings& settings, const C_Node& node)
{
  const auto& list = static_cast<const Kind&>(node);
  const auto values = settings.CreateNode(QStringLiteral("Values"));
  values->SetClass(QStringLiteral("list"));
  values->SetVersion(1);
  for (size_t i = 0; i < list.GetSize(); ++i)
    values->AppendCollectionItem(itemName(), list.GetValue(i));
  settings.Set(QStringLiteral("Min"), list.GetRange().minimum);
  settings.Set(QStringLiteral("Max"), list.GetRange().maximum);
}

void writeText(Writer&, Settings& settings, const C_Node& node)
{
  settings.Set(QStringLiteral("Value"), static_cast<const C_Text&>(node).GetValue());
}

void writeTextList(Writer&, Settings& settings, const C_Node& node)
{
  SerializeTo(*settings.CreateNode(QStringLiteral("Values")), static_cast<const C_TextList&>(node).GetValues());
}

void writeEnumerationEntry(Writer&, Settings& settings, const C_Node& node)
{
  settings.Set(QStringLiteral("Value"), static_cast<const C_EnumerationEntry&>(node).GetValue());
}

void writeEnumeration(Writer& writer, Settings& settings, const C_Node& node)
{
  const auto& enumeration = static_cast<const C_Enumeration&>(node);
  const auto& entries = enumeration.GetEntries();
  writer.writeList(settings, QStringLiteral("Entries"), Nodes(entries.begin(), entries.end()));
  settings.Set(QStringLiteral("CurrentEntry"), enumeration.GetCurrentEntry()->GetName());
}

void writeListNode(Writer& writer, Settings& settings, const C_Node& node)
{
  const auto& list = static_cast<const C_List&>(node);
  Nodes items;
  items.reserve(list.GetLength());
  for (unsigned int i = 0; i < list.GetLength(); ++i)
    items.push_back(list.GetAt(i));
  writer.writeList(settings, QStringLiteral("Items"), items);
}

void writeAction(Writer&, Settings&, const C_Node&) {}

struct WriterEntry
{
  WriteKind write;
  // The writers cast statically; a node must really be of the kind its name claims.
  bool (*isKind)(const C_Node&);
};

template <typename Kind>
bool isKind(const C_Node& node)
{
  return dynamic_cast<const Kind*>(&node) != nullptr;
}

template <typename Kind>
std::pair<QString, WriterEntry> writerFor(WriteKind write)
{
  return {Kind::GetStaticTypeName(), WriterEntry{write, &isKind<Kind>}};
}

const QHash<QString, WriterEntry>& writers()
{
  static const QHash<QString, WriterEntry> table{
      writerFor<C_Category>(&writeCategory),
      writerFor<C_Bool>(&writeBool),
      writerFor<C_Integer>(&writeNumber<C_Integer>),
      writerFor<C_Double>(&writeNumber<C_Double>),
      writerFor<C_IntegerList>(&writeNumberList<C_IntegerList>),
      writerFor<C_DoubleList>(&writeNumberList<C_DoubleList>),
      writerFor<C_Text>(&writeText),
      writerFor<C_TextList>(&writeTextList),
      writerFor<C_EnumerationEntry>(&writeEnumerationEntry),
      writerFor<C_Enumeration>(&writeEnumeration),
      writerFor<C_List>(&writeListNode),
      writerFor<C_Action>(&writeAction),
  };
  return table;
}

void Writer::writeNode(Settings& settings, const std::shared_ptr<C_Node>& node)
{
  if (!node)
    RTE::Raise(EmptyObjectError());
  const QString typeName = node->GetTypeName();
  const auto found = writers().constFind(typeName);
  if (found == writers().constEnd() || !found->isKind(*node))
    raiseUnsupported(typeName);
  if (std::find(m_path.begin(), m_path.end(), node.get()) != m_path.end())
    RTE::Raise(RTE::InvalidArgumentError(
        translate("Parameter node '%1' contains itself and cannot be written").arg(node->GetName())));
  m_path.push_back(node.get());
  struct Pop
  {
    std::vector<const C_Node*>& path;
    ~Pop() { path.pop_back(); }
  } pop{m_path};
  writeCommon(settings, *node);
  found->write(*this, settings, *node);
}

void Writer::writeList(Settings& parent, const QString& name, const Nodes& nodes)
{
  const auto list = parent.CreateNode(name);
  list->SetClass(QStringLiteral("list"));
  list->SetVersion(1);
  for (const auto& node : nodes)
  {
    if (!node)
      RTE::Raise(EmptyObjectError());
    const auto item = list->AppendCollectionNode(itemName());
    if (item) // empty where the list holds a plain "item": that element is skipped
      writeNode(*item, node);
  }
}

// ---------------------------------------------------------------------------- reading

struct Common
{
  QString label;
  QString name;
  QString description;
  E_AccessMode accessMode = UndefinedAccesMode;
  E_VisibilityLevel visibilityLevel = Visible4Customer;
};

// A leaf that must be there: a missing one throws the settings tree's NotExistingSetting.
template <typename T>
T requiredLeaf(const Settings& settings, const QString& name)
{
  if (!settings.Contains(name))
    settings.GetNode(name); // throws, located and logged by the settings tree
  return settings.Get<T>(name, T{});
}

Common readCommon(const Settings& settings)
{
  Common common;
  common.label = requiredLeaf<QString>(settings, QStringLiteral("Label"));
  common.name = requiredLeaf<QString>(settings, QStringLiteral("Name"));
  common.description = requiredLeaf<QString>(settings, QStringLiteral("Description"));
  const int access = requiredLeaf<int>(settings, QStringLiteral("AccessMode"));
  if (access != ReadOnly && access != ReadWrite && access != UndefinedAccesMode)
    RTE::Raise(InvalidValue(settings.GetClass(), QStringLiteral("AccessMode")));
  common.accessMode = static_cast<E_AccessMode>(access);
  const int visibility = requiredLeaf<int>(settings, QStringLiteral("VisibilityLevel"));
  if (visibility != Visible4Customer && visibility != Visible4Service && visibility != Visible4Developer)
    RTE::Raise(InvalidValue(settings.GetClass(), QStringLiteral("VisibilityLevel")));
  common.visibilityLevel = static_cast<E_VisibilityLevel>(visibility);
  return common;
}

// Access mode and visibility for the factories that do not take them.
template <typename Node>
std::shared_ptr<Node> withCommon(std::shared_ptr<Node> node, const Common& common)
{
  node->SetAccessMode(common.accessMode);
  node->SetVisibilityLevel(common.visibilityLevel);
  return node;
}

std::shared_ptr<C_Node> readNode(const Settings& settings);

// The nodes of list `name` in index order.
Nodes readList(const Settings& parent, const QString& name)
{
  const auto list = parent.GetNode(name);
  const unsigned long long count = list->IsCollection(itemName()) ? list->Count(itemName()) : 0;
  Nodes nodes;
  nodes.reserve(static_cast<size_t>(std::min<unsigned long long>(count, 1u << 20)));
  for (unsigned long long index = 0; index < count; ++index)
    nodes.push_back(readNode(*list->GetCollectionNode(itemName(), index)));
  return nodes;
}

// Children of a category or of a tree's root; names must be unique, as AddChild keeps them.
std::list<std::shared_ptr<C_Node>> readChildren(const Settings& parent, const QString& name)
{
  const Nodes nodes = readList(parent, name);
  QSet<QString> names;
  names.reserve(static_cast<qsizetype>(nodes.size()));
  for (const auto& node : nodes)
  {
    if (names.contains(node->GetName()))
      RTE::Raise(InvalidValue(parent.GetClass(), name + QLatin1Char('.') + node->GetName()));
    names.insert(node->GetName());
  }
  return {nodes.begin(), nodes.end()};
}

std::shared_ptr<C_Node> readCategory(const Settings& settings)
{
  const Common common = readCommon(settings);
  auto category = withCommon(CreateCategory(common.name, common.label, common.description), common);
  category->SetChildList(readChildren(settings, QStringLiteral("ChildList")));
  return category;
}

std::shared_ptr<C_Node> readBool(const Settings& settings)
{
  const Common common = readCommon(settings);
  auto node = CreateBool(common.name, common.label, common.description, common.accessMode,
                         requiredLeaf<bool>(settings, QStringLiteral("Value")), C_Bool::EditorCheckBox);
  node->SetVisibilityLevel(common.visibilityLevel);
  return node;
}

std::shared_ptr<C_Node> readInteger(const Settings& settings)
{
  const Common common = readCommon(settings);
  const auto value = requiredLeaf<long long>(settings, QStringLiteral("Value"));
  const auto minimum = requiredLeaf<long long>(settings, QStringLiteral("Min"));
  const auto maximum = requiredLeaf<long long>(settings, QStringLiteral("Max"));
  const auto step = requiredLeaf<long long>(settings, QStringLiteral("Step"));
  auto node = CreateInteger(common.name, common.label, common.description, common.accessMode, value, minimum, maximum,
                            C_Integer::EditorSpinBox);
  node->SetStep(step);
  node->SetVisibilityLevel(common.visibilityLevel);
  return node;
}

std::shared_ptr<C_Node> readDouble(const Settings& settings)
{
  const Common common = readCommon(settings);
  const auto value = requiredLeaf<double>(settings, QStringLiteral("Value"));
  const auto minimum = requiredLeaf<double>(settings, QStringLiteral("Min"));
  const auto maximum = requiredLeaf<double>(settings, QStringLiteral("Max"));
  const auto step = requiredLeaf<double>(settings, QStringLiteral("Step"));
  // The precision is not stored: the factory's 2.
  auto node = CreateDouble(common.name, common.label, common.description, common.accessMode, value, minimum, maximum,
                           C_Double::EditorSpinBox, 2);
  node->SetStep(step);
  node->SetVisibilityLevel(common.visibilityLevel);
  return node;
}

template <typename T>
std::vector<T> readValues(const Settings& settings)
{
  const auto values = settings.GetNode(QStringLiteral("Values"));
  const unsigned long long count = values->IsCollection(itemName()) ? values->Count(itemName()) : 0;
  std::vector<T> result;
  result.reserve(static_cast<size_t>(std::min<unsigned long long>(count, 1u << 20)));
  for (unsigned long long index = 0; index < count; ++index)
    result.push_back(values->GetCollectionItem<T>(itemName(), index, T{}));
  return result;
}

// Each element through SetValue, so that one outside the stored range throws; silent
// while filling, since nobody can listen to a node still being read.
template <typename List, typename T>
void fillNumberList(List& list, const std::vector<T>& values)
{
  list.SetSize(values.size(), list.GetRange().minimum);
  list.EnableSignals(false);
  for (size_t i = 0; i < values.size(); ++i)
    list.SetValue(i, values[i]);
  list.EnableSignals(true);
}

std::shared_ptr<C_Node> readIntegerList(const Settings& settings)
{
  const Common common = readCommon(settings);
  const auto values = readValues<long long>(settings);
  const auto minimum = requiredLeaf<long long>(settings, QStringLiteral("Min"));
  const auto maximum = requiredLeaf<long long>(settings, QStringLiteral("Max"));
  auto node = CreateIntegerList(common.name, 0, common.label, common.description, common.accessMode, minimum, minimum,
                                maximum, C_IntegerList::EditorLineEdit);
  fillNumberList(*node, values);
  node->SetVisibilityLevel(common.visibilityLevel);
  return node;
}

std::shared_ptr<C_Node> readDoubleList(const Settings& settings)
{
  const Common common = readCommon(settings);
  const auto values = readValues<double>(settings);
  const auto minimum = requiredLeaf<double>(settings, QStringLiteral("Min"));
  const auto maximum = requiredLeaf<double>(settings, QStringLiteral("Max"));
  auto node = CreateDoubleList(common.name, 0, common.label, common.description, common.accessMode, minimum, minimum,
                               maximum, C_DoubleList::EditorLineEdit, 2);
  fillNumberList(*node, values);
  node->SetVisibilityLevel(common.visibilityLevel);
  return node;
}

std::shared_ptr<C_Node> readText(const Settings& settings)
{
  const Common common = readCommon(settings);
  auto node = CreateText(common.name, common.label, common.description, common.accessMode,
                         requiredLeaf<QString>(settings, QStringLiteral("Value")), C_Text::EditorLineEdit);
  node->SetVisibilityLevel(common.visibilityLevel);
  return node;
}

std::shared_ptr<C_Node> readTextList(const Settings& settings)
{
  const Common common = readCommon(settings);
  std::vector<QString> values;
  DeserializeFrom(*settings.GetNode(QStringLiteral("Values")), values);
  auto node = CreateTextList(common.name, 0, common.label, common.description, common.accessMode, QString(),
                             C_TextList::EditorLineEdit);
  node->SetValues(values);
  node->SetVisibilityLevel(common.visibilityLevel);
  return node;
}

std::shared_ptr<C_Node> readEnumerationEntry(const Settings& settings)
{
  const Common common = readCommon(settings);
  auto entry = RTE::Parameter::Private::CreateEnumerationEntry(
      common.name, common.label, common.description, requiredLeaf<long long>(settings, QStringLiteral("Value")));
  return withCommon(std::move(entry), common);
}

std::shared_ptr<C_Node> readEnumeration(const Settings& settings)
{
  const Common common = readCommon(settings);
  auto enumeration = withCommon(
      CreateEnumeration(common.name, common.label, common.description, C_Enumeration::EditorComboBox), common);
  const QString entryType = C_EnumerationEntry::GetStaticTypeName();
  const auto entries = settings.GetNode(QStringLiteral("Entries"));
  const unsigned long long count = entries->IsCollection(itemName()) ? entries->Count(itemName()) : 0;
  for (unsigned long long index = 0; index < count; ++index)
  {
    const auto item = entries->GetCollectionNode(itemName(), index);
    if (!item->IsClass(entryType))
      RTE::Raise(SettingHasWrongClass(QStringLiteral("Entries.item"), entryType, item->GetClass()));
    enumeration->AddEntry(std::static_pointer_cast<C_EnumerationEntry>(readEnumerationEntry(*item)));
  }
  if (settings.Contains(QStringLiteral("CurrentEntry")))
    enumeration->SetCurrentEntry(settings.Get<QString>(QStringLiteral("CurrentEntry"), QString()));
  return enumeration;
}

// A copy of `prototype` made through the settings tree, for the entry maker of a list
// read back (the maker itself cannot be stored).
std::shared_ptr<C_Node> cloneNode(const std::shared_ptr<C_Node>& prototype)
{
  SettingsStringBasedDocument document;
  Writer().writeNode(document, prototype);
  return readNode(document);
}

std::shared_ptr<C_Node> readListNode(const Settings& settings)
{
  const Common common = readCommon(settings);
  const Nodes items = readList(settings, QStringLiteral("Items"));
  // New entries are made like the first stored one; a list stored empty has no maker.
  C_List::EntryMaker maker;
  if (!items.empty())
  {
    const auto prototype = readNode(*settings.GetNode(QStringLiteral("Items"))->GetCollectionNode(itemName(), 0));
    maker = [prototype] { return cloneNode(prototype); };
  }
  auto list = withCommon(
      CreateList(common.name, common.label, common.description, std::move(maker), C_List::EditorLineEdit), common);
  for (const auto& item : items)
    list->Append(item);
  return list;
}

std::shared_ptr<C_Node> readAction(const Settings& settings)
{
  const Common common = readCommon(settings);
  auto action =
      CreateAction(common.name, common.label, common.description, common.accessMode, C_Action::EditorPushButton);
  action->SetVisibilityLevel(common.visibilityLevel);
  return action;
}

using ReadKind = std::shared_ptr<C_Node> (*)(const Settings&);

const QHash<QString, ReadKind>& readers()
{
  static const QHash<QString, ReadKind> table{
      {C_Category::GetStaticTypeName(), &readCategory},
      {C_Bool::GetStaticTypeName(), &readBool},
      {C_Integer::GetStaticTypeName(), &readInteger},
      {C_Double::GetStaticTypeName(), &readDouble},
      {C_IntegerList::GetStaticTypeName(), &readIntegerList},
      {C_DoubleList::GetStaticTypeName(), &readDoubleList},
      {C_Text::GetStaticTypeName(), &readText},
      {C_TextList::GetStaticTypeName(), &readTextList},
      {C_EnumerationEntry::GetStaticTypeName(), &readEnumerationEntry},
      {C_Enumeration::GetStaticTypeName(), &readEnumeration},
      {C_List::GetStaticTypeName(), &readListNode},
      {C_Action::GetStaticTypeName(), &readAction},
  };
  return table;
}

std::shared_ptr<C_Node> readNode(const Settings& settings)
{
  const QString typeName = settings.GetClass();
  const auto found = readers().constFind(typeName);
  if (found == readers().constEnd())
    raiseUnsupported(typeName);
  return (*found)(settings);
}

void requireClass(const Settings& settings, const QString& className)
{
  if (!settings.IsClass(className))
    RTE::Raise(
        SettingHasWrongClass(settings.Get<QString>(QStringLiteral("Name"), QString()), className, settings.GetClass()));
}

template <typename Kind>
Settings& writeTyped(Settings& settings, const std::shared_ptr<Kind>& node)
{
  Writer().writeNode(settings, node);
  return settings;
}

template <typename Kind>
void readTyped(const Settings& settings, std::shared_ptr<Kind>& node)
{
  requireClass(settings, Kind::GetStaticTypeName());
  node = std::static_pointer_cast<Kind>(readNode(settings));
}

const QString& treeClass()
{
  static const QString name = QStringLiteral("ParameterTree");
  return name;
}

} // namespace

Settings& SerializeTo(Settings& settings, const std::shared_ptr<C_Tree>& tree)
{
  if (!tree)
    RTE::Raise(EmptyObjectError());
  settings.SetClass(treeClass());
  const auto children = tree->GetChildList();
  Writer().writeList(settings, QStringLiteral("Root"), Nodes(children.begin(), children.end()));
  return settings;
}

void DeserializeFrom(const Settings& settings, std::shared_ptr<C_Tree>& tree)
{
  requireClass(settings, treeClass());
  auto read = CreateTree();
  read->GetRootCategory()->SetChildList(readChildren(settings, QStringLiteral("Root")));
  tree = std::move(read);
}

Settings& SerializeTo(Settings& settings, const std::shared_ptr<C_Node>& node)
{
  return writeTyped(settings, node);
}

void DeserializeFrom(const Settings& settings, std::shared_ptr<C_Node>& node)
{
  node = readNode(settings);
}

#define CORECOMMON_PARAMETER_STORAGE(Kind)                                                                             \
  Settings& SerializeTo(Settings& settings, const std::shared_ptr<Kind>& node)                                         \
  {                                                                                                                    \
    return writeTyped(settings, node);                                                                                 \
  }                                                                                                                    \
  void DeserializeFrom(const Settings& settings, std::shared_ptr<Kind>& node)                                          \
  {                                                                                                                    \
    readTyped(settings, node);                                                                                         \
  }

CORECOMMON_PARAMETER_STORAGE(C_Category)
CORECOMMON_PARAMETER_STORAGE(C_Bool)
CORECOMMON_PARAMETER_STORAGE(C_Integer)
CORECOMMON_PARAMETER_STORAGE(C_Double)
CORECOMMON_PARAMETER_STORAGE(C_IntegerList)
CORECOMMON_PARAMETER_STORAGE(C_DoubleList)
CORECOMMON_PARAMETER_STORAGE(C_Text)
CORECOMMON_PARAMETER_STORAGE(C_TextList)
CORECOMMON_PARAMETER_STORAGE(C_Enumeration)
CORECOMMON_PARAMETER_STORAGE(C_EnumerationEntry)
CORECOMMON_PARAMETER_STORAGE(C_List)
CORECOMMON_PARAMETER_STORAGE(C_Action)

#undef CORECOMMON_PARAMETER_STORAGE

} // namespace Storage
