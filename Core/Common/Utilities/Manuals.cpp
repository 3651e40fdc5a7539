#include <Core/Common/Utilities/Manuals.h>

#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Utilities/DesktopLaunch_p.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace RTE
{

namespace
{

void checkPart(const QString& part, const char* what)
{
  if (part.isEmpty() || part.contains(QLatin1Char('/')) || part.contains(QLatin1Char('\\')) ||
      part == QLatin1String(".") || part.contains(QLatin1String("..")))
  {
    Raise(InvalidArgumentError(
        QCoreApplication::translate("RTE::Manuals", "Invalid manual %1 '%2'.").arg(QLatin1String(what), part)));
  }
}

} // namespace

Manuals::Manuals(QString folder) : m_folder(std::move(folder)), m_handler(QStringLiteral("xdg-open")) {}

QString Manuals::findManual(const QString& name, const QString& language) const
{
  checkPart(name, "name");
  checkPart(language, "language");
  QStringList languages{language};
  // "de_DE" (Qt's form) and "de-DE" (the tag form) both fall back to "de".
  static const QRegularExpression separator(QStringLiteral("[_-]"));
  if (const qsizetype cut = language.indexOf(separator); cut > 0)
    languages.append(language.left(cut));
  languages.append(QStringLiteral("en"));
  languages.removeDuplicates();

  QStringList fileNames;
  if (QFileInfo(name).suffix().isEmpty())
    fileNames << name + QStringLiteral(".pdf") << name + QStringLiteral(".html");
  fileNames << name;

  const QDir folder(m_folder);
  for (const QString& lang : languages)
  {
    for (const QString& fileName : fileNames)
    {
      const QFileInfo file(folder.filePath(lang + QLatin1Char('/') + fileName));
      if (file.isFile())
        return file.absoluteFilePath();
    }
  }
  return {};
}

QString Manuals::openManual(const QString& name, const QString& language) const
{
  const QString path = findManual(name, language);
  if (path.isEmpty())
  {
    FileOpenError error(QDir(m_folder).filePath(language + QLatin1Char('/') + name));
    error.setMessage(QCoreApplication::translate("RTE::Manuals",
                                                 "No manual '%1' in language '%2' or in English in the manuals "
                                                 "folder '%3'.")
                         .arg(name, language, QDir::toNativeSeparators(m_folder)));
    Raise(std::move(error));
  }
  DesktopLaunch::startDetached(m_handler, {path},
                               QCoreApplication::translate("RTE::Manuals", "the manual '%1'").arg(path));
  return path;
}

} // namespace RTE
