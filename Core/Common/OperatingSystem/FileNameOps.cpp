#include <Core/Common/OperatingSystem/FileNameOps.h>

#include <algorithm>

namespace RTE
{

bool FileNameOps::IsFileNameValid(const QString& name)
{
  const QString trimmed = name.trimmed();
  if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('.')))
    return false;
  static const QString forbidden = QStringLiteral(":|><?*\\/\t\r\n");
  return std::none_of(trimmed.begin(), trimmed.end(), [](QChar c) { return forbidden.contains(c); });
}

QString FileNameOps::MakeValidFileName(const QString& name, QChar replacement, bool isPureFileName)
{
  QString result = name.trimmed();
  static const QString always = QStringLiteral("\t\n\r\"*<>?|");
  for (qsizetype i = 0; i < result.size(); ++i)
  {
    const QChar c = result[i];
    const bool separator = c == QLatin1Char('/') || c == QLatin1Char('\\');
    const bool colon = c == QLatin1Char(':') && (isPureFileName || i >= 2);
    if (always.contains(c) || (separator && isPureFileName) || colon)
      result[i] = replacement;
  }
  return result;
}

} // namespace RTE
