// A text that could not be parsed, with the position of the fault.
//
//   RTE::ParseError e("unexpected token", 3, 14);
//   e.message();  // "unexpected token in line 3, column 14"
#pragma once

#include <Core/Common/Exceptions/Exception.h>

#include <QCoreApplication>

namespace RTE
{

class CORECOMMON_EXPORT ParseError : public Exception
{
  Q_DECLARE_TR_FUNCTIONS(RTE::ParseError)

public:
  // Empty message; line and column -1.
  ParseError();
  // Message "<text> in line <line>, column <column>".
  ParseError(const QString& text, int line, int column);
  ~ParseError() override;

  const QString& text() const { return m_text; }
  int line() const { return m_line; }
  int column() const { return m_column; }

private:
  QString m_text;
  int m_line = -1;
  int m_column = -1;
};

} // namespace RTE
