#include <Core/Common/Utilities/NameWithWildcardEditModel.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Storage/ValueSerialization.h>

#include <algorithm>

namespace RTE
{

namespace
{

const QString& className()
{
  static const QString name = QStringLiteral("NameWithWildcardEditModel");
  return name;
}

const QString& itemName()
{
  static const QString name = QStringLiteral("Name");
  return name;
}

// '[' and ']' would open character sets, which users typing names do not expect; '/'
// and '\' are path separators that the wildcards never match.
bool isForbidden(QChar c)
{
  return c == u'[' || c == u']' || c == u'/' || c == u'\\' || c.category() == QChar::Other_Control;
}

} // namespace

bool NameWithWildcardEditModel::isEntry(const QModelIndex& index) const
{
  // Not checkIndex: views ask with stale or empty indexes, which is no fault to log.
  return index.isValid() && index.model() == this && index.column() == 0 && !index.parent().isValid() &&
         index.row() < rowCount();
}

NameWithWildcardEditModel::NameWithWildcardEditModel(QObject* parent) : QAbstractListModel(parent) {}

NameWithWildcardEditModel::NameWithWildcardEditModel(const QStringList& names, QObject* parent) :
    QAbstractListModel(parent)
{
  setNames(names);
}

NameWithWildcardEditModel::~NameWithWildcardEditModel() = default;

int NameWithWildcardEditModel::rowCount(const QModelIndex& parent) const
{
  return parent.isValid() ? 0 : static_cast<int>(m_names.size());
}

QVariant NameWithWildcardEditModel::data(const QModelIndex& index, int role) const
{
  if (!isEntry(index))
    return {};
  if (role != Qt::DisplayRole && role != Qt::EditRole)
    return {};
  return m_names[index.row()];
}

bool NameWithWildcardEditModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
  if (!isEntry(index))
    return false;
  if ((role != Qt::EditRole && role != Qt::DisplayRole) || !value.canConvert<QString>())
    return false;
  const QString name = value.toString().trimmed();
  const int row = index.row();
  if (!validationError(name, row).isEmpty())
    return false;
  if (name != m_names[row])
  {
    m_names[row] = name;
    m_patterns[row] = patternFor(name);
    emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
  }
  return true;
}

Qt::ItemFlags NameWithWildcardEditModel::flags(const QModelIndex& index) const
{
  if (!isEntry(index))
    return Qt::NoItemFlags;
  return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemNeverHasChildren;
}

bool NameWithWildcardEditModel::removeRows(int row, int count, const QModelIndex& parent)
{
  if (parent.isValid() || row < 0 || count <= 0 || row > rowCount() - count)
    return false;
  beginRemoveRows(QModelIndex(), row, row + count - 1);
  m_names.remove(row, count);
  m_patterns.remove(row, count);
  endRemoveRows();
  return true;
}

void NameWithWildcardEditModel::setNames(const QStringList& names)
{
  // Checked against a growing copy, so duplicates inside names are found as well.
  NameWithWildcardEditModel checked;
  for (const QString& name : names)
  {
    const QString error = checked.validationError(name);
    if (!error.isEmpty())
      RTE::Raise(InvalidArgumentError(error));
    checked.m_names.append(name.trimmed());
    checked.m_patterns.append(patternFor(checked.m_names.last()));
  }
  beginResetModel();
  m_names.swap(checked.m_names);
  m_patterns.swap(checked.m_patterns);
  endResetModel();
}

void NameWithWildcardEditModel::insertName(int row, const QString& name)
{
  if (row < 0 || row > rowCount())
  {
    RTE::Raise(OutOfRangeError(tr("Cannot insert a name at row %1: the list has %2 entries").arg(row).arg(rowCount())));
  }
  const QString error = validationError(name);
  if (!error.isEmpty())
    RTE::Raise(InvalidArgumentError(error));
  const QString trimmed = name.trimmed();
  beginInsertRows(QModelIndex(), row, row);
  m_names.insert(row, trimmed);
  m_patterns.insert(row, patternFor(trimmed));
  endInsertRows();
}

void NameWithWildcardEditModel::appendName(const QString& name)
{
  insertName(rowCount(), name);
}

bool NameWithWildcardEditModel::removeName(const QString& name)
{
  const int row = indexOf(name.trimmed());
  return row >= 0 && removeRows(row, 1);
}

QString NameWithWildcardEditModel::validationError(const QString& name, int row) const
{
  const QString trimmed = name.trimmed();
  if (trimmed.isEmpty())
    return tr("A name must not be empty or only white space");
  for (const QChar c : trimmed)
  {
    if (isForbidden(c))
    {
      const QString shown = c.category() == QChar::Other_Control
                                ? QStringLiteral("U+%1").arg(c.unicode(), 4, 16, QLatin1Char('0')).toUpper()
                                : QString(c);
      return tr("The name '%1' holds '%2'; a name may not hold control characters or any of [ ] / \\")
          .arg(trimmed, shown);
    }
  }
  const int existing = indexOf(trimmed);
  if (existing >= 0 && existing != row)
    return tr("The name '%1' is already in the list as '%2'").arg(trimmed, m_names[existing]);
  return QString();
}

int NameWithWildcardEditModel::indexOf(const QString& name) const
{
  for (qsizetype row = 0; row < m_names.size(); ++row)
  {
    if (m_names[row].compare(name, Qt::CaseInsensitive) == 0)
      return static_cast<int>(row);
  }
  return -1;
}

bool NameWithWildcardEditModel::matches(const QString& name) const
{
  return std::any_of(m_patterns.cbegin(), m_patterns.cend(),
                     [&name](const QRegularExpression& pattern) { return pattern.match(name).hasMatch(); });
}

QStringList NameWithWildcardEditModel::matchingEntries(const QString& name) const
{
  QStringList entries;
  for (const int row : matchingRows(name))
    entries.append(m_names[row]);
  return entries;
}

QList<int> NameWithWildcardEditModel::matchingRows(const QString& name) const
{
  QList<int> rows;
  for (qsizetype row = 0; row < m_patterns.size(); ++row)
  {
    if (m_patterns[row].match(name).hasMatch())
      rows.append(static_cast<int>(row));
  }
  return rows;
}

Storage::Settings& NameWithWildcardEditModel::SerializeTo(Storage::Settings& settings) const
{
  settings.SetClass(className());
  settings.SetVersion(1);
  settings.Remove(itemName());
  for (const QString& name : m_names)
    settings.AppendCollectionItem(itemName(), name);
  return settings;
}

void NameWithWildcardEditModel::DeserializeFrom(const Storage::Settings& settings)
{
  NameWithWildcardEditModel read;
  if (Storage::IsReadableVersion1(settings, className()))
  {
    const unsigned long long count = settings.IsCollection(itemName()) ? settings.Count(itemName()) : 0;
    for (unsigned long long index = 0; index < count; ++index)
    {
      const QString name = settings.GetCollectionItem<QString>(itemName(), index, QString());
      const QString error = read.validationError(name);
      if (error.isEmpty())
        read.appendName(name);
      else
        settings.Report(QStringLiteral("Name %1 left out: %2").arg(index).arg(error));
    }
  }
  beginResetModel();
  m_names.swap(read.m_names);
  m_patterns.swap(read.m_patterns);
  endResetModel();
}

QRegularExpression NameWithWildcardEditModel::patternFor(const QString& name)
{
  return QRegularExpression(QRegularExpression::wildcardToRegularExpression(name),
                            QRegularExpression::CaseInsensitiveOption);
}

} // namespace RTE
