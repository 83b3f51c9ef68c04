#include "xml_values.h"

#include "limits.h"
#include "xml_names.h"

#include <ofd/model/problem_log.h>

#include <QCoreApplication>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace ofd {

namespace {

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

// Without blanks and without one plus sign, which the conversion functions do not know.
std::string_view Digits(std::string_view text)
{
    text = Trimmed(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    return text;
}

template <typename Value>
std::optional<Value> Convert(std::string_view text)
{
    const std::string_view digits = Digits(text);
    Value value{};
    const std::from_chars_result result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (result.ec != std::errc() || result.ptr != digits.data() + digits.size())
        return std::nullopt;
    return value;
}

char Folded(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c;
}

// Some writers put commas between numbers.
std::string Separated(std::string_view text)
{
    std::string separated(text);
    std::replace(separated.begin(), separated.end(), ',', ' ');
    return separated;
}

// Exactly that many numbers, between blanks or commas; nothing when there are fewer, more, or a bad one.
template <int Count>
bool ParseExactly(std::string_view text, double (&values)[Count])
{
    const std::string separated = Separated(text);
    const std::vector<std::string_view> words = SplitWords(separated);
    if (int(words.size()) != Count)
        return false;
    for (int i = 0; i < Count; ++i) {
        const std::optional<double> number = ParseNumber(words[size_t(i)]);
        if (!number)
            return false;
        values[i] = *number;
    }
    return true;
}

void TellOfValue(const pugi::xml_attribute& attribute)
{
    constexpr int shownLength = 80;
    ReportProblem(ProblemKind::BadValue, QCoreApplication::translate("OfdPackage", "%1=\"%2\" cannot be read.")
                                             .arg(QString::fromUtf8(attribute.name()),
                                                  QString::fromUtf8(attribute.value()).left(shownLength)));
}

// The attribute's value; nothing when it is missing, or bad, which is told.
template <typename Value>
std::optional<Value> ValueOf(const pugi::xml_node& node, std::string_view localName,
                             std::optional<Value> (*parse)(std::string_view))
{
    const pugi::xml_attribute attribute = Attribute(node, localName);
    if (!attribute)
        return std::nullopt;
    const std::optional<Value> value = parse(attribute.value());
    if (!value)
        TellOfValue(attribute);
    return value;
}

} // namespace

std::optional<double> ParseNumber(std::string_view text)
{
    const std::optional<double> number = Convert<double>(text);
    if (!number || !std::isfinite(*number) || std::fabs(*number) > limits::MaxNumber)
        return std::nullopt;
    return number;
}

std::optional<int> ParseInteger(std::string_view text)
{
    if (const std::optional<int> whole = Convert<int>(text))
        return whole;
    // Some writers put "12.0" where a whole number belongs.
    const std::optional<double> number = ParseNumber(text);
    if (!number || *number != std::floor(*number))
        return std::nullopt;
    return int(*number);
}

std::optional<quint32> ParseId(std::string_view text)
{
    return Convert<quint32>(text);
}

std::optional<bool> ParseBoolean(std::string_view text)
{
    if (EqualsWord(text, "true") || EqualsWord(text, "1"))
        return true;
    if (EqualsWord(text, "false") || EqualsWord(text, "0"))
        return false;
    return std::nullopt;
}

std::optional<QPointF> ParsePosition(std::string_view text)
{
    double values[2] = {};
    if (!ParseExactly(text, values))
        return std::nullopt;
    return QPointF(values[0], values[1]);
}

std::optional<QRectF> ParseBox(std::string_view text)
{
    double values[4] = {};
    if (!ParseExactly(text, values))
        return std::nullopt;
    return QRectF(values[0], values[1], values[2], values[3]);
}

std::optional<QVector<double>> ParseArray(std::string_view text, bool* isAllRead)
{
    const std::string separated = Separated(text);
    const std::vector<std::string_view> words = SplitWords(separated);
    if (words.size() > size_t(limits::MaxArrayItems))
        return std::nullopt;
    QVector<double> values;
    values.reserve(int(words.size()));
    for (const std::string_view word : words) {
        const std::optional<double> number = ParseNumber(word);
        if (isAllRead && !number)
            *isAllRead = false;
        values.append(number.value_or(0));
    }
    return values;
}

std::vector<std::string_view> SplitWords(std::string_view text)
{
    std::vector<std::string_view> words;
    size_t at = 0;
    while (at < text.size()) {
        while (at < text.size() && IsBlank(text[at]))
            ++at;
        const size_t begin = at;
        while (at < text.size() && !IsBlank(text[at]))
            ++at;
        if (at > begin)
            words.push_back(text.substr(begin, at - begin));
    }
    return words;
}

bool EqualsWord(std::string_view text, std::string_view word)
{
    text = Trimmed(text);
    if (text.size() != word.size())
        return false;
    for (size_t i = 0; i < text.size(); ++i) {
        if (Folded(text[i]) != Folded(word[i]))
            return false;
    }
    return true;
}

double NumberAttribute(const pugi::xml_node& node, std::string_view localName, double missing)
{
    return ValueOf(node, localName, ParseNumber).value_or(missing);
}

int IntegerAttribute(const pugi::xml_node& node, std::string_view localName, int missing)
{
    return ValueOf(node, localName, ParseInteger).value_or(missing);
}

quint32 IdAttribute(const pugi::xml_node& node, std::string_view localName, quint32 missing)
{
    return ValueOf(node, localName, ParseId).value_or(missing);
}

int IdForPlace(const pugi::xml_node& node)
{
    return int(ParseId(Attribute(node, "ID").as_string()).value_or(0));
}

bool BooleanAttribute(const pugi::xml_node& node, std::string_view localName, bool missing)
{
    return ValueOf(node, localName, ParseBoolean).value_or(missing);
}

std::optional<QRectF> BoxAttribute(const pugi::xml_node& node, std::string_view localName)
{
    return ValueOf(node, localName, ParseBox);
}

std::optional<QVector<double>> ArrayAttribute(const pugi::xml_node& node, std::string_view localName)
{
    const pugi::xml_attribute attribute = Attribute(node, localName);
    if (!attribute)
        return std::nullopt;
    bool isAllRead = true;
    std::optional<QVector<double>> values = ParseArray(attribute.value(), &isAllRead);
    if (!values || !isAllRead)
        TellOfValue(attribute);
    return values;
}

} // namespace ofd
