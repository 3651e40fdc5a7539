#include "SettingsDocImpl_p.h"

#include "PugiXmlWriterToQFile_p.h"
#include "StorageLog_p.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

#include <algorithm>
#include <atomic>

Q_LOGGING_CATEGORY(lcSerialization, "Core.Serialization", QtWarningMsg)

namespace Storage::Private
{

namespace
{

std::atomic<bool> s_writeDiagnosticsDisabled{false};

// No white-space conversion in attribute values: multi-line strings keep their breaks.
constexpr unsigned int kParseOptions =
    pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol | pugi::parse_declaration;

// A diagnostic quotes the content it rejects; a huge or binary file is cut short.
QString Quoted(const QString& content)
{
  constexpr qsizetype kMaximum = 4096;
  return content.size() <= kMaximum ? content : content.left(kMaximum) + QStringLiteral("...");
}

} // namespace

SettingsDocImpl::SettingsDocImpl() : m_root(pugi::xml_node(), this)
{
  CreateEmptyDocument();
}

SettingsDocImpl::~SettingsDocImpl() = default;

void SettingsDocImpl::DisableExceptionOnWrite()
{
  s_writeDiagnosticsDisabled = true;
}

void SettingsDocImpl::CreateEmptyDocument()
{
  m_pending.Discard();
  ForgetPrototypes();
  m_childIndex.Reset();
  m_document.reset();
  m_buffer.clear();
  SetXMLDeclaration();
  m_root.m_element = m_document.append_child("root");
}

void SettingsDocImpl::SetXMLDeclaration()
{
  for (pugi::xml_node node = m_document.first_child(); node;)
  {
    const pugi::xml_node next = node.next_sibling();
    if (node.type() == pugi::node_declaration)
      m_document.remove_child(node);
    node = next;
  }
  pugi::xml_node declaration = m_document.prepend_child(pugi::node_declaration);
  declaration.append_attribute("version").set_value("1.0");
  declaration.append_attribute("encoding").set_value("UTF-8");
}

void SettingsDocImpl::Fail(const QString& diagnostic)
{
  qCWarning(lcSerialization).noquote() << diagnostic;
  CreateEmptyDocument();
}

SettingsDocImpl::ParseOutcome SettingsDocImpl::Parse(QByteArray buffer, pugi::xml_encoding encoding,
                                                     QString& parserDescription)
{
  m_pending.Discard();
  ForgetPrototypes();
  m_childIndex.Reset();
  m_hasReports = false;
  m_buffer = std::move(buffer);
  // Parsed in place: the buffer is the document's storage from now on.
  const pugi::xml_parse_result result =
      m_document.load_buffer_inplace(m_buffer.data(), static_cast<size_t>(m_buffer.size()), kParseOptions, encoding);
  if (!result)
  {
    parserDescription = QString::fromUtf8(result.description());
    return ParseOutcome::ParseError;
  }
  const pugi::xml_node root = m_document.child("root");
  if (!root)
    return ParseOutcome::NoRoot;
  // Written text is indented by depth, so its size grows with the square of the
  // nesting: a small file nested a hundred thousand levels deep would be written as
  // gigabytes. Settings trees nest a few dozen levels; deeper input is refused.
  if (!m_childIndex.IndexTree(root, kMaximumDepth))
  {
    parserDescription = QStringLiteral("Elements nested deeper than %1 levels").arg(kMaximumDepth);
    return ParseOutcome::ParseError;
  }
  // Only the declaration and "root" belong to a settings document.
  for (pugi::xml_node node = m_document.first_child(); node;)
  {
    const pugi::xml_node next = node.next_sibling();
    if (node != root && node.type() != pugi::node_declaration)
    {
      m_childIndex.Clear(node); // without recursion, however deep it nests
      m_document.remove_child(node);
    }
    node = next;
  }
  SetXMLDeclaration();
  m_root.m_element = root;
  return ParseOutcome::Ok;
}

bool SettingsDocImpl::Read(QFile& file)
{
  const QString name = file.fileName();
  if (!file.open(QIODevice::ReadOnly))
  {
    Fail(QStringLiteral("Settings file could not be opened for reading: ") + name);
    return false;
  }
  QByteArray content = file.readAll();
  file.close();
  if (content.isEmpty())
  {
    Fail(QStringLiteral("Settings file is empty: ") + name);
    return false;
  }
  // Kept for the diagnostic: parsing in place changes the buffer.
  const QByteArray original = content;
  QString description;
  switch (Parse(std::move(content), pugi::encoding_auto, description))
  {
  case ParseOutcome::Ok:
    return true;
  case ParseOutcome::ParseError:
    Fail(QStringLiteral("Load content from file '") + name + QStringLiteral("' failed: XML-parse error is: ") +
         description);
    return false;
  case ParseOutcome::NoRoot:
    Fail(QStringLiteral("XML content error: Root node not found. Content is: ###") +
         Quoted(QString::fromUtf8(original)) + QStringLiteral("### from file: ") + name);
    return false;
  }
  return false;
}

bool SettingsDocImpl::Read(const QString& xmlText)
{
  if (xmlText.isEmpty())
  {
    Fail(QStringLiteral("Content is empty."));
    return false;
  }
  QString description;
  // The text is already decoded: whatever encoding its declaration names, it is UTF-8 now.
  QByteArray utf8 = xmlText.toUtf8();
  utf8.squeeze(); // the conversion reserves three bytes per character; the tree keeps the buffer
  switch (Parse(std::move(utf8), pugi::encoding_utf8, description))
  {
  case ParseOutcome::Ok:
    return true;
  case ParseOutcome::ParseError:
    Fail(QStringLiteral("Invalid XML-content, parse error is:\n") + description);
    return false;
  case ParseOutcome::NoRoot:
    Fail(QStringLiteral("XML content error: Root node not found. Content is: ###") + Quoted(xmlText) +
         QStringLiteral("###"));
    return false;
  }
  return false;
}

bool SettingsDocImpl::WriteToFile(QSaveFile& file) const
{
  if (!file.open(QIODevice::WriteOnly))
  {
    if (!s_writeDiagnosticsDisabled)
    {
      qCWarning(lcSerialization).noquote()
          << QStringLiteral("File ") + file.fileName() + QStringLiteral(" could not be opened for writing.");
    }
    return false;
  }
  PugiXmlWriterToQFile writer(file);
  if (m_pending.Empty())
    Write(writer);
  else
  {
    const QByteArray tree = TreeText();
    for (const std::string_view piece : m_pending.Pieces(tree))
      writer.write(piece.data(), piece.size());
  }
  if (writer.Failed())
  {
    // The previous file stays as it was.
    file.cancelWriting();
    file.commit();
    qCWarning(lcSerialization).noquote() << QStringLiteral("File ") + file.fileName() +
                                                QStringLiteral(" could not be written: ") + file.errorString();
    return false;
  }
  if (!file.commit())
  {
    qCWarning(lcSerialization).noquote() << QStringLiteral("File ") + file.fileName() +
                                                QStringLiteral(" could not be written: ") + file.errorString();
    return false;
  }
  return true;
}

namespace
{

class WriterToByteArray final : public pugi::xml_writer
{
public:
  explicit WriterToByteArray(QByteArray& text) : m_text(text) {}
  void write(const void* data, size_t size) override
  {
    m_text.append(static_cast<const char*>(data), static_cast<qsizetype>(size));
  }

private:
  QByteArray& m_text;
};

} // namespace

QByteArray SettingsDocImpl::TreeText() const
{
  QByteArray text;
  WriterToByteArray writer(text);
  Write(writer);
  return text;
}

QString SettingsDocImpl::ToString() const
{
  // Decoded piece after piece into a text of the most characters the bytes can give,
  // then cut to what they gave; ASCII takes the decoder's fast path.
  const QByteArray tree = TreeText();
  const std::vector<std::string_view> pieces = m_pending.Pieces(tree);
  qsizetype bytes = 0;
  for (const std::string_view piece : pieces)
    bytes += static_cast<qsizetype>(piece.size());
  QString text(bytes, Qt::Uninitialized);
  QStringDecoder decoder(QStringDecoder::Utf8);
  QChar* end = text.data();
  for (const std::string_view piece : pieces)
    end = decoder.appendToBuffer(end, QByteArrayView(piece.data(), static_cast<qsizetype>(piece.size())));
  text.truncate(end - text.constData());
  return text;
}

bool SettingsDocImpl::HoldItem(pugi::xml_node parent, std::string_view name, const char* className,
                               std::string_view valueText)
{
  const std::string_view type(className);
  if (!SettingsPendingItems::IsPlainText(type) || !SettingsPendingItems::IsPlainText(valueText))
    return false;
  if (m_pending.IsFor(parent, name))
  {
    // An element may already hold the next index (an item with a higher index read from
    // a file): it is overwritten, as an element.
    if (!m_pending.NextIsFree())
      return false;
  }
  else
  {
    if (!m_childIndex.HasTable(parent) || !SettingsPendingItems::CanHoldName(name))
      return false; // small collections are searched directly; elements are as cheap
    Settle();
    unsigned long long index = 0;
    bool isCollection = false;
    const pugi::xml_node existing = m_childIndex.NextItem(parent, name, index, isCollection);
    if (!isCollection || existing)
      return false; // item 0 and overwrites take the element way

    m_pending.Begin(parent, name, index, m_childIndex.FirstTakenIndex(parent, name, index));
  }
  m_pending.Add(type, valueText);
  return true;
}

void SettingsDocImpl::Write(pugi::xml_writer& writer) const
{
  for (pugi::xml_node node = m_document.first_child(); node; node = node.next_sibling())
  {
    if (node != m_prototypes)
      node.print(writer, "\t", pugi::format_indent, pugi::encoding_utf8);
  }
}

void SettingsDocImpl::ForgetPrototypes()
{
  // Their nodes go with the document's.
  m_prototypes = pugi::xml_node();
  m_prototypeByKey.clear();
  m_recentPrototypeName.clear();
  m_recentPrototypeClass.clear();
  m_recentPrototype = pugi::xml_node();
}

pugi::xml_node SettingsDocImpl::CollectionItemPrototype(std::string_view name, const char* className)
{
  // Items are appended one after another: the last prototype is usually the one.
  if (m_recentPrototype && name == m_recentPrototypeName && m_recentPrototypeClass == className)
    return m_recentPrototype;
  const std::string_view classView(className);
  const size_t keySize = name.size() + 1 + classView.size();
  // Names that are plain XML names only: the text must hold no markup.
  const auto plain = [](char c)
  {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
           c == '.' || static_cast<unsigned char>(c) >= 0x80;
  };
  if (name.empty() || (name[0] >= '0' && name[0] <= '9') || name[0] == '-' || name[0] == '.' ||
      !std::all_of(name.begin(), name.end(), plain))
    return {};
  std::string key;
  key.reserve(keySize);
  key.append(name).append(1, '\0').append(classView);
  auto it = m_prototypeByKey.find(key);
  if (it == m_prototypeByKey.end())
  {
    if (!m_prototypes)
      m_prototypes = m_document.append_child("prototypes");
    const pugi::xml_node before = m_prototypes.last_child();
    std::string text;
    text.append("<").append(name).append(" index=\"\" class=\"").append(classView).append("\" value=\"\"/>");
    const pugi::xml_parse_result result =
        m_prototypes.append_buffer(text.data(), text.size(), pugi::parse_minimal, pugi::encoding_utf8);
    pugi::xml_node prototype = m_prototypes.last_child();
    // Accepted only if the text came back as exactly this element.
    const pugi::xml_attribute index = prototype.first_attribute();
    const pugi::xml_attribute type = index.next_attribute();
    const pugi::xml_attribute value = type.next_attribute();
    const bool exact = result && prototype != before && prototype.type() == pugi::node_element &&
                       prototype.previous_sibling() == before && !prototype.first_child() && name == prototype.name() &&
                       std::string_view(index.name()) == "index" && std::string_view(type.name()) == "class" &&
                       classView == type.value() && std::string_view(value.name()) == "value" &&
                       !value.next_attribute();
    if (!exact)
    {
      while (m_prototypes.last_child() != before)
        m_prototypes.remove_child(m_prototypes.last_child());
      prototype = pugi::xml_node();
    }
    it = m_prototypeByKey.emplace(std::move(key), prototype).first;
  }
  m_recentPrototypeName = name;
  m_recentPrototypeClass = className;
  m_recentPrototype = it->second;
  return it->second;
}

} // namespace Storage::Private
