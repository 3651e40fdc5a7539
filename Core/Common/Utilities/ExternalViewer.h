// Starts the external viewer program the user configured, with a file to show.
//
//   RTE::ExternalViewer viewer(QStringLiteral("gimp"));
//   viewer.open(QStringLiteral("/data/run1/frame0001.tif"));
//   RTE::ExternalViewer custom(QStringLiteral("/opt/view/bin/view"), {QStringLiteral("--file=%1")});
//
// The arguments are given to the program as they are, with "%1" in any of them replaced
// by the file's absolute path; when none holds "%1" the path is added as the last
// argument. The program is started detached: open never waits for it.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>
#include <QStringList>

namespace RTE
{

class CORECOMMON_EXPORT ExternalViewer
{
public:
  // The program: a name found on PATH or a path to an executable file.
  explicit ExternalViewer(QString program = {}, QStringList arguments = {});

  const QString& program() const { return m_program; }
  void setProgram(const QString& program) { m_program = program; }
  const QStringList& arguments() const { return m_arguments; }
  void setArguments(const QStringList& arguments) { m_arguments = arguments; }

  // Whether a program is set.
  bool isConfigured() const { return !m_program.isEmpty(); }

  // The arguments the program gets for this file.
  QStringList argumentsFor(const QString& filePath) const;

  // Starts the program with the file and returns its process id. Throws (logged)
  // RTE::InvalidRequest when no program is configured, it is missing, not executable or
  // does not start, and RTE::FileOpenError when the file does not exist.
  qint64 open(const QString& filePath) const;

private:
  QString m_program;
  QStringList m_arguments;
};

} // namespace RTE
