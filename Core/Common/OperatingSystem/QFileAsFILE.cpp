#include <Core/Common/OperatingSystem/QFileAsFILE.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/FileSystem.h>

#include <QCoreApplication>
#include <QFile>

#include <fcntl.h>
#include <unistd.h>

namespace RTE
{

QFileAsFILE::QFileAsFILE(const QString& path) : m_path(path) {}

QFileAsFILE::~QFileAsFILE()
{
  close();
}

void QFileAsFILE::openForReading()
{
  open(false);
}

void QFileAsFILE::openForWriting()
{
  open(true);
}

void QFileAsFILE::open(bool forWriting)
{
  if (m_stream != nullptr)
    RTE::Raise(RTE::VerificationFailed(QCoreApplication::translate("RTE::QFileAsFILE", "File already open")));
  const QByteArray name = QFile::encodeName(FileSystem::FixPath(m_path));
  const int fd = forWriting ? ::open(name.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)
                            : ::open(name.constData(), O_RDONLY | O_CLOEXEC);
  FILE* stream = fd < 0 ? nullptr : ::fdopen(fd, forWriting ? "wb" : "rb");
  if (stream == nullptr)
  {
    if (fd >= 0)
      ::close(fd);
    const QString what = forWriting ? QCoreApplication::translate("RTE::QFileAsFILE", "Unable to create file")
                                    : QCoreApplication::translate("RTE::QFileAsFILE", "Unable to open file");
    RTE::Raise(RTE::Exception(what + QStringLiteral(" \"") + m_path + QLatin1Char('"')));
  }
  m_stream = stream;
  m_owned = true;
}

FILE* QFileAsFILE::get() const
{
  return m_stream;
}

void QFileAsFILE::close()
{
  if (m_stream != nullptr && m_owned)
    std::fclose(m_stream);
  m_stream = nullptr;
  m_owned = false;
}

void QFileAsFILE::alreadyClosed()
{
  m_stream = nullptr;
  m_owned = false;
}

} // namespace RTE
