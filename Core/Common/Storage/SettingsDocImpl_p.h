// The XML document behind SettingsDocument and SettingsStringBasedDocument: owns the
// pugixml tree, the root node, the has-reports flag and the child index, and reads and
// writes the text.
//
// Text form: declaration version "1.0", encoding "UTF-8", then one element "root";
// UTF-8 without byte-order mark, one tab per level. Attribute values keep their tabs
// and line breaks when read (no white-space conversion), so multi-line strings survive.
#pragma once

#include "SettingsChildIndex_p.h"
#include "SettingsDomElem_p.h"
#include "SettingsPendingItems_p.h"

#include <QByteArray>
#include <QString>

#include <pugixml.hpp>

#include <string>
#include <string_view>
#include <unordered_map>

class QFile;
class QSaveFile;

namespace Storage::Private
{

class SettingsDocImpl
{
public:
  // An empty document: the declaration and an empty "root".
  SettingsDocImpl();
  SettingsDocImpl(const SettingsDocImpl&) = delete;
  SettingsDocImpl& operator=(const SettingsDocImpl&) = delete;
  ~SettingsDocImpl();

  // Replaces the tree by the file's content; false (and an empty document) when the file
  // cannot be read, is empty, is no XML or has no "root".
  bool Read(QFile& file);
  // The same for a text.
  bool Read(const QString& xmlText);
  // Writes the document text to file and commits it: the file is replaced as a whole or
  // not at all. False when it cannot be opened, written or committed.
  bool WriteToFile(QSaveFile& file) const;
  // The document text: declaration, tab indentation.
  QString ToString() const;

  SettingsDomElem& GetRoot() { return m_root; }
  const SettingsDomElem& GetRoot() const { return m_root; }
  bool HasReports() const { return m_hasReports; }
  void SetHasReports() { m_hasReports = true; }
  SettingsChildIndex& ChildIndex() { return m_childIndex; }

  // Appends item name of parent's collection as text when it can be held so (see
  // SettingsPendingItems): parent has a table, the texts need no escaping and no element
  // holds the item's index yet. False when the caller must append it as an element.
  bool HoldItem(pugi::xml_node parent, std::string_view name, const char* className, std::string_view valueText);
  // Turns items held as text into elements. Every access to the tree other than
  // appending to the held collection and writing the document settles first.
  void Settle()
  {
    if (!m_pending.Empty())
      m_pending.Flush(m_childIndex);
  }

  // An element <name index="" class="className" value=""/> outside the saved tree, parsed
  // from text so that its name and attributes are not separately allocated: copies of it
  // share them (pugixml shares unallocated strings within a document). Null when name
  // does not parse back as itself. For large collections, whose items differ only in
  // their index and value.
  pugi::xml_node CollectionItemPrototype(std::string_view name, const char* className);

  // Deepest nesting below "root" that Read accepts.
  static constexpr int kMaximumDepth = 1000;

  // Stops the diagnostic about files that cannot be opened for writing, for the whole
  // process; cannot be undone.
  static void DisableExceptionOnWrite();

private:
  void CreateEmptyDocument();
  void SetXMLDeclaration();
  // Parses buffer (kept as the document's storage), finds "root"; on failure logs
  // failureText(description) or noRootText and leaves an empty document.
  enum class ParseOutcome
  {
    Ok,
    ParseError,
    NoRoot
  };
  ParseOutcome Parse(QByteArray buffer, pugi::xml_encoding encoding, QString& parserDescription);
  void Fail(const QString& diagnostic);
  // Writes the declaration and "root", not the prototypes.
  void Write(pugi::xml_writer& writer) const;
  // The document text in UTF-8 as the tree has it: the items held as text are marked.
  QByteArray TreeText() const;
  void ForgetPrototypes();

  pugi::xml_document m_document;
  QByteArray m_buffer;
  SettingsChildIndex m_childIndex;
  SettingsPendingItems m_pending;
  SettingsDomElem m_root;
  bool m_hasReports = false;
  // Top-level element after "root" that holds the prototypes; null until one is needed.
  pugi::xml_node m_prototypes;
  // Key: name, '\0', class name. A null node marks a name that cannot be a prototype.
  std::unordered_map<std::string, pugi::xml_node> m_prototypeByKey;
  std::string m_recentPrototypeName;
  std::string m_recentPrototypeClass;
  pugi::xml_node m_recentPrototype;
};

} // namespace Storage::Private
