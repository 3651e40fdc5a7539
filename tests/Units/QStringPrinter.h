// Lets GoogleTest show QString values as text in failure messages.
#pragma once

#include <QString>

#include <ostream>

inline void PrintTo(const QString& text, std::ostream* os)
{
  *os << '"' << text.toStdString() << '"';
}
