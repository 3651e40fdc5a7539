#include "CompressionTool.h"

#include "Command.h"

#include <Core/Common/Plugins/C_PluginFactory.h>

namespace rte
{

namespace
{
const std::string domain = "Tarvell.Compression";
// Files from this size on show their progress.
constexpr unsigned long long progressFrom = 32ULL << 20;
} // namespace

std::shared_ptr<RTE::I_Compression> createCodec(const QString& name)
{
  return std::dynamic_pointer_cast<RTE::I_Compression>(
      RTE::C_PluginFactory::GetInstance().CreatePluginObject(domain, name.toStdString()));
}

QStringList codecNames()
{
  QStringList names;
  for (const std::string& name : RTE::C_PluginFactory::GetInstance().GetListOfPluginTypes(domain))
    names << QString::fromStdString(name);
  return names;
}

std::optional<QVariantMap> parseParameters(const QStringList& texts, const QString& command)
{
  QVariantMap parameters;
  for (const QString& text : texts)
  {
    const qsizetype equals = text.indexOf(QLatin1Char('='));
    const QString key = text.left(equals).trimmed();
    const QString value = text.mid(equals + 1).trimmed();
    bool number = false;
    const qlonglong asNumber = value.toLongLong(&number);
    if (equals <= 0 || (!number && value != QLatin1String("true") && value != QLatin1String("false")))
    {
      err() << "rte " << command << ": parameter '" << text << "' is not key=number or key=true|false\n";
      return std::nullopt;
    }
    parameters.insert(key, number ? QVariant(asNumber) : QVariant(value == QLatin1String("true")));
  }
  return parameters;
}

bool usesRows(const RTE::I_Compression& codec)
{
  const std::string name = codec.GetName();
  return name == "IMX" || name == "FixedBitsOfWord";
}

void setBlockShape(RTE::I_Compression& codec, unsigned long long columns, unsigned long long rows)
{
  if (usesRows(codec))
    codec.SetParameters({{QStringLiteral("Columns"), columns}, {QStringLiteral("Rows"), rows}});
}

Progress::Progress(QString what, unsigned long long total) :
    m_what(std::move(what)),
    m_total(total),
    m_shown(total >= progressFrom)
{
}

void Progress::advance(unsigned long long done)
{
  if (!m_shown || m_total == 0)
    return;
  const int percent = static_cast<int>(done * 100 / m_total);
  if (percent == m_last)
    return;
  m_last = percent;
  err() << "\r" << m_what << ": " << percent << "%" << (percent >= 100 ? "\n" : "") << Qt::flush;
}

} // namespace rte
