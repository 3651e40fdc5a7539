// Root of the library's exception family.
//
// Every failure of the library is an RTE::Exception (or a subclass) carrying a
// user-facing message and the source location that raised it. Library code never
// throws by hand; it goes through RTE::Raise (Core/Common/Exceptions/Raise.h), which
// records the location, logs the exception and throws it:
//
//   RTE::Raise(RTE::InvalidArgumentError(QObject::tr("Width must be positive")));
//
// Callers catch the most specific class they handle and RTE::Exception for the rest.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QByteArray>
#include <QString>

#include <exception>

namespace RTE
{

class CORECOMMON_EXPORT Exception : public std::exception
{
public:
  explicit Exception(const QString& message);
  Exception(const Exception&) = default;
  Exception(Exception&&) noexcept = default;
  Exception& operator=(const Exception&) = default;
  Exception& operator=(Exception&&) noexcept = default;
  ~Exception() override;

  // The message converted to Latin-1, cached in the exception; the dynamic type's name
  // if the conversion fails. Never throws.
  const char* what() const noexcept override;

  const QString& message() const { return m_message; }
  void setMessage(const QString& message);

  // Empty and 0 until setLocation.
  const QString& sourceFile() const { return m_sourceFile; }
  unsigned int sourceLine() const { return m_sourceLine; }

  // Records where the exception was raised. Everything up to and including the last
  // "Sources" folder name is replaced by "<sources>", so build-machine folders never
  // reach reports; a path without "Sources" is kept as it is.
  void setLocation(const QString& file, unsigned int line);

  // The diagnostic report: "<message>\n<file> (line: <line>) \n<type name>".
  // Returns an empty text if composing fails; never throws.
  QString logText() const noexcept;

  // Writes logText() to the logging category "Core.Exception" (debug level).
  // Never throws.
  void log() const noexcept;

  // The demangled name of the dynamic type, for example "RTE::ParseError".
  QString typeName() const;

private:
  QString m_message;
  QString m_sourceFile;
  unsigned int m_sourceLine = 0;
  mutable QByteArray m_what;
};

} // namespace RTE
