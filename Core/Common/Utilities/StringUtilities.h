// Helpers for 8-bit and toolkit strings, and number parsing that ignores the process
// locale.
//
//   RTE::toDouble(std::string(" 1.5 "));                         // 1.5, also under LANG=de_DE
//   RTE::String::replaceEnvironmentVariables("$HOME/data");      // "/home/anna/data"
//   RTE::String::ToHexString(char(-1), 2, "0x");                 // "0xffffffffffffffff"
//
// Character classes and case mapping are those of the C locale (ASCII), whatever locale
// the process runs in.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <string>
#include <vector>

namespace RTE
{

// The number at the start of text after blanks and tabs are removed from both ends,
// read in the C locale ('.' as decimal point); a trailing rest is ignored ("3.0abc" is
// 3). An empty text (or one of only blanks and tabs) gives a quiet NaN.
// Throws std::invalid_argument ("invalid stod argument") when no number starts the text,
// std::out_of_range ("stod argument out of range") when it does not fit a double.
CORECOMMON_EXPORT double toDouble(const std::string& text);
// As above, on the Latin-1 form of text.
CORECOMMON_EXPORT double toDouble(const QString& text);
// As toDouble in single precision; the texts say "stof".
CORECOMMON_EXPORT float toFloat(const std::string& text);
CORECOMMON_EXPORT float toFloat(const QString& text);

namespace String
{

enum class CompareMode
{
  CaseSensitive = 0,
  CaseInsensitive = 1,
};

// Replaces "$NAME" and "%NAME%" by the value of the environment variable NAME (case
// matters). A name is the longest run of letters: "$HOME_DIR" reads HOME and keeps
// "_DIR". Unknown or empty variables leave the text as it is; "%NAME" without the
// closing "%" is kept. Each name is replaced once, so values that name themselves
// cannot expand without end.
CORECOMMON_EXPORT QString replaceEnvironmentVariables(const QString& text);

// "true" or "false".
CORECOMMON_EXPORT std::string ToString(bool value);

// Whether the text (8-bit text taken as Latin-1), trimmed of white space, ends with a
// decimal digit.
CORECOMMON_EXPORT bool endsWithDigit(const std::string& text);
CORECOMMON_EXPORT bool endsWithDigit(const QString& text);

// Substring test; CaseInsensitive compares with ASCII case folding, any other mode
// exactly.
CORECOMMON_EXPORT bool Contains(const std::string& text, const std::string& part, CompareMode mode);

// prefix, then value in lower-case hexadecimal, padded with '0' to width digits. The
// value is widened to a signed 64-bit number first, a char counting as signed on every
// platform: char(-1) gives "ffffffffffffffff".
CORECOMMON_EXPORT std::string ToHexString(char value, int width, const std::string& prefix);
CORECOMMON_EXPORT std::string ToHexString(unsigned char value, int width, const std::string& prefix);

// ASCII case mapping in place.
CORECOMMON_EXPORT void ToLower(std::string& text);
CORECOMMON_EXPORT void ToUpper(std::string& text);

// text without white space (blank, tab, line feed, carriage return, vertical tab, form
// feed) at both ends, the start or the end. Unless keepArgument, text itself is
// trimmed too.
CORECOMMON_EXPORT std::string Trim(std::string& text, bool keepArgument);
CORECOMMON_EXPORT std::string TrimLeft(std::string& text, bool keepArgument);
CORECOMMON_EXPORT std::string TrimRight(std::string& text, bool keepArgument);

// Removes the given characters (Latin-1 for QString) at both ends.
CORECOMMON_EXPORT std::string TrimString(const std::string& text, const std::vector<char>& characters);
CORECOMMON_EXPORT QString TrimString(const QString& text, const std::vector<char>& characters);
CORECOMMON_EXPORT void TrimString(std::string& text, const std::string& characters);
CORECOMMON_EXPORT void TrimString(QString& text, const std::string& characters);

// Every occurrence of from replaced by to, left to right without rescanning; an empty
// from changes nothing.
CORECOMMON_EXPORT std::string Replace(const std::string& text, const std::string& from, const std::string& to);

// The parts between separators, empty parts kept ("a,,b" gives "a", "", "b"); an empty
// text gives no parts; an empty separator gives the whole text as one part.
CORECOMMON_EXPORT std::vector<std::string> Split(const std::string& text, const std::string& separator);
CORECOMMON_EXPORT std::vector<std::string> split(const std::string& text, const std::string& separator);

// tokens becomes the non-empty runs of text between any of the delimiter characters.
CORECOMMON_EXPORT void Tokenize(const std::string& text, std::vector<std::string>& tokens,
                                const std::string& delimiters);

// result becomes the parts joined with glue.
CORECOMMON_EXPORT void Implode(const std::vector<std::string>& parts, const std::string& glue, std::string& result);

} // namespace String

} // namespace RTE
