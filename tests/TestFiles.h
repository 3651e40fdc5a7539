// Whole-file reads and writes for tests that prepare or inspect files.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// The file's bytes; empty when it cannot be read.
inline QByteArray readFile(const QString& path)
{
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Replaces the file's content; false when it cannot be written whole.
[[nodiscard]] inline bool writeFile(const QString& path, const QByteArray& content)
{
  QFile file(path);
  return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
}
