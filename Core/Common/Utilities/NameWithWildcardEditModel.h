// An editable list of names that may hold the wildcards '*' (any run of characters) and
// '?' (one character), such as "Camera*" or "Laser?", for settings like "apply to these
// devices". A view edits it through the item-model interface; code asks which entries
// match a name.
//
//   RTE::NameWithWildcardEditModel model({"Camera*", "Laser?"});
//   model.appendName("Engine 2");
//   model.matches("camera 3");            // true: matching ignores case
//   model.matchingEntries("Laser1");      // {"Laser?"}
//   model.SerializeTo(*settings.CreateNode("Devices"));
//
// Entries are trimmed of surrounding white space and must be valid (see
// validationError): not empty, no control characters, none of '[', ']', '/', '\'. No
// two entries may be equal when case is ignored, the way the system compares names
// typed by users. Rows are inserted together with their name (insertName): an unnamed
// row would be an invalid entry, so insertRows is not offered.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Storage/Settings.h>

#include <QAbstractListModel>
#include <QList>
#include <QRegularExpression>
#include <QStringList>

namespace RTE
{

class CORECOMMON_EXPORT NameWithWildcardEditModel : public QAbstractListModel, public Storage::I_SerializableSettings
{
  Q_OBJECT

public:
  explicit NameWithWildcardEditModel(QObject* parent = nullptr);
  // Raises as setNames.
  explicit NameWithWildcardEditModel(const QStringList& names, QObject* parent = nullptr);
  ~NameWithWildcardEditModel() override;

  // Item model: one column, Qt::DisplayRole and Qt::EditRole give the entry. setData
  // accepts a valid, non-duplicate text for an existing row under Qt::EditRole (or
  // DisplayRole) and returns false, changing nothing, otherwise.
  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;

  // The entries in row order.
  const QStringList& names() const { return m_names; }
  // Replaces every entry (one model reset). All or nothing: raises
  // RTE::InvalidArgumentError naming the first invalid or duplicate entry and keeps the
  // model as it was.
  void setNames(const QStringList& names);
  // Inserts an entry before row (rowCount() appends). Raises RTE::OutOfRangeError for a
  // row outside 0..rowCount(), RTE::InvalidArgumentError with validationError's text
  // for an entry that is not accepted.
  void insertName(int row, const QString& name);
  void appendName(const QString& name);
  // Removes the entry equal to name (case ignored); false when there is none.
  bool removeName(const QString& name);

  // Why name (trimmed) cannot be the entry of row, or an empty text when it can. row -1
  // asks for a new entry; otherwise row's own entry does not count as a duplicate, so
  // "camera*" may be renamed "Camera*".
  QString validationError(const QString& name, int row = -1) const;
  // The row whose entry equals name when case is ignored, or -1.
  int indexOf(const QString& name) const;

  // Whether any entry matches the whole of name, case ignored. '*' and '?' do not match
  // '/' (they follow QRegularExpression::wildcardToRegularExpression).
  bool matches(const QString& name) const;
  // The entries that match name, in row order.
  QStringList matchingEntries(const QString& name) const;
  QList<int> matchingRows(const QString& name) const;

  // Class "NameWithWildcardEditModel", version 1, one collection item "Name" per entry.
  Storage::Settings& SerializeTo(Storage::Settings& settings) const override;
  // Lenient, as every settings reader: a node of another class or version gives an
  // empty list (another version is reported); invalid or duplicate items are left out
  // and reported (Settings::Report). One model reset.
  void DeserializeFrom(const Storage::Settings& settings) override;

private:
  bool isEntry(const QModelIndex& index) const;
  static QRegularExpression patternFor(const QString& name);

  QStringList m_names;
  QList<QRegularExpression> m_patterns; // one per entry, same order
};

} // namespace RTE
