// Helpers shared by the operating-system suites (and used by a few others): what a call
// throws, and files to work on.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

#include <gtest/gtest.h>

#include "Thrown.h"

// A file of size bytes of fill, its folders made as needed.
inline void WriteFile(const QString& path, qint64 size, char fill = 'x')
{
  QDir().mkpath(QFileInfo(path).absolutePath());
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
  ASSERT_EQ(file.write(QByteArray(size, fill)), size) << path.toStdString();
}
