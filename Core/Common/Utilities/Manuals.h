// Opens the application's manuals with the desktop's handler for their file type.
//
//   RTE::Manuals manuals(appFolder + QStringLiteral("/manuals"));
//   manuals.openManual(QStringLiteral("CameraSetup"), QStringLiteral("de_DE"));
//
// Layout of the manuals folder: one subfolder per language ("en", "de", "de_DE"), each
// holding the manuals of that language under the same file names:
//
//   manuals/en/CameraSetup.pdf
//   manuals/de/CameraSetup.pdf
//
// A manual is looked up in the language as given ("de_DE" or "de-DE"), then in its
// language part ("de"), then in English ("en"). A name without an extension is tried as ".pdf", then
// ".html", then as it is. The file is handed to the handler program ("xdg-open" unless
// set otherwise), which is started detached: openManual never waits for it.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

namespace RTE
{

class CORECOMMON_EXPORT Manuals
{
public:
  // The folder holding the language subfolders.
  explicit Manuals(QString folder = {});

  const QString& folder() const { return m_folder; }
  void setFolder(const QString& folder) { m_folder = folder; }

  // The program that opens a file with the desktop's handler; "xdg-open" by default.
  const QString& handler() const { return m_handler; }
  void setHandler(const QString& program) { m_handler = program; }

  // The manual's file path by the rules above; empty when there is none. Throws
  // RTE::InvalidArgumentError for a name or language that is empty or could leave the
  // folder ("/", "\", ".." ).
  QString findManual(const QString& name, const QString& language) const;

  // Opens the manual and returns its file path. Throws RTE::FileOpenError (logged) when
  // no such manual exists in the language or in English, RTE::InvalidRequest (logged)
  // when the handler program is missing or does not start, and RTE::InvalidArgumentError
  // as findManual.
  QString openManual(const QString& name, const QString& language) const;

private:
  QString m_folder;
  QString m_handler;
};

} // namespace RTE
