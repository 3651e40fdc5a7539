// Helpers shared by the operating-system suites (and used by a few others).
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <gtest/gtest.h>

#include <optional>

// The message of the E that call throws; other exceptions escape and fail the test.
template <typename E, typename F>
QString MessageOf(F&& call)
{
  try
  {
    call();
  }
  catch (const E& e)
  {
    return e.message();
  }
  return QStringLiteral("<nothing thrown>");
}

// A copy of the E that call throws, or nothing; other exceptions escape and fail the test.
template <typename E, typename F>
std::optional<E> Caught(F&& call)
{
  try
  {
    call();
  }
  catch (const E& e)
  {
    return e;
  }
  return std::nullopt;
}

// A file of size bytes of fill, its folders made as needed.
inline void WriteFile(const QString& path, qint64 size, char fill = 'x')
{
  QDir().mkpath(QFileInfo(path).absolutePath());
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
  ASSERT_EQ(file.write(QByteArray(size, fill)), size) << path.toStdString();
}
