#include "json_value.h"

#include <cmath>
#include <cstring>

// Reads one text into a value; used once. Every function gives null or false at the first thing that is no JSON.
class JsonParser
{
public:
    using Value = OVJson::Value;

    JsonParser(const char* text, int length)
        : at(text)
        , end(text + length)
    {
    }
    // The whole text must be one object or array.
    std::shared_ptr<Value> ParseDocument();

private:
    std::shared_ptr<Value> ParseValue(int depth);
    std::shared_ptr<Value> ParseObject(int depth);
    std::shared_ptr<Value> ParseArray(int depth);
    std::shared_ptr<Value> ParseNumber();
    std::shared_ptr<Value> ParseWord();
    bool ParseString(QString* string);
    bool ParseEscape(QString* string);
    bool ParseHex(QString* string);
    int SkipDigits();
    bool Skip(char wanted);
    bool SkipWord(const char* word);
    void SkipBlanks();

    const char* at;
    const char* end;
    int valueCount = 0;
};

std::shared_ptr<JsonParser::Value> JsonParser::ParseDocument()
{
    SkipWord("\xEF\xBB\xBF"); // a byte order mark
    SkipBlanks();
    if (at == end || (*at != '{' && *at != '['))
        return nullptr;
    auto value = ParseValue(0);
    SkipBlanks();
    return at == end ? value : nullptr;
}

std::shared_ptr<JsonParser::Value> JsonParser::ParseValue(int depth)
{
    SkipBlanks();
    if (at == end || ++valueCount > maxJsonValues)
        return nullptr;
    if (*at == '{')
        return ParseObject(depth + 1);
    if (*at == '[')
        return ParseArray(depth + 1);
    if (*at == '"') {
        auto value = Value::Make(Value::String);
        return ParseString(&value->text) ? value : nullptr;
    }
    if (*at == '-' || (*at >= '0' && *at <= '9'))
        return ParseNumber();
    return ParseWord();
}

std::shared_ptr<JsonParser::Value> JsonParser::ParseObject(int depth)
{
    if (depth > maxJsonDepth)
        return nullptr;
    ++at;
    auto object = Value::Make(Value::Object);
    SkipBlanks();
    if (Skip('}'))
        return object;
    do {
        SkipBlanks();
        QString key;
        if (!ParseString(&key))
            return nullptr;
        SkipBlanks();
        if (!Skip(':'))
            return nullptr;
        auto member = ParseValue(depth);
        if (!member)
            return nullptr;
        object->Put(key.toUtf8(), std::move(member)); // of equal keys the last value counts
        SkipBlanks();
    } while (Skip(','));
    return Skip('}') ? object : nullptr;
}

std::shared_ptr<JsonParser::Value> JsonParser::ParseArray(int depth)
{
    if (depth > maxJsonDepth)
        return nullptr;
    ++at;
    auto array = Value::Make(Value::Array);
    SkipBlanks();
    if (Skip(']'))
        return array;
    do {
        auto element = ParseValue(depth);
        if (!element)
            return nullptr;
        array->items.append(std::move(element));
        SkipBlanks();
    } while (Skip(','));
    return Skip(']') ? array : nullptr;
}

std::shared_ptr<JsonParser::Value> JsonParser::ParseNumber()
{
    const char* start = at;
    Skip('-');
    const bool startsWithZero = at != end && *at == '0';
    const int wholeDigits = SkipDigits();
    if (wholeDigits == 0 || (startsWithZero && wholeDigits > 1))
        return nullptr;
    if (Skip('.') && SkipDigits() == 0)
        return nullptr;
    if (Skip('e') || Skip('E')) {
        if (!Skip('+'))
            Skip('-');
        if (SkipDigits() == 0)
            return nullptr;
    }
    bool isNumber = false;
    const double number = QByteArray(start, static_cast<int>(at - start)).toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? Value::MakeNumber(number) : nullptr;
}

std::shared_ptr<JsonParser::Value> JsonParser::ParseWord()
{
    if (SkipWord("null"))
        return Value::Make(Value::Null);
    auto value = Value::Make(Value::Bool);
    value->flag = SkipWord("true");
    return value->flag || SkipWord("false") ? value : nullptr;
}

bool JsonParser::ParseString(QString* string)
{
    if (!Skip('"'))
        return false;
    while (at != end && *at != '"') {
        const char* start = at;
        while (at != end && *at != '"' && *at != '\\' && static_cast<unsigned char>(*at) >= 0x20)
            ++at;
        *string += QString::fromUtf8(start, static_cast<int>(at - start));
        if (at == end)
            return false;
        if (*at != '"' && !ParseEscape(string))
            return false;
    }
    return Skip('"');
}

bool JsonParser::ParseEscape(QString* string)
{
    if (!Skip('\\') || at == end)
        return false; // a bare control character, or the text ends behind the backslash
    const char letter = *at++;
    switch (letter) {
    case '"':
    case '\\':
    case '/':
        *string += QLatin1Char(letter);
        return true;
    case 'b':
        *string += QLatin1Char('\b');
        return true;
    case 'f':
        *string += QLatin1Char('\f');
        return true;
    case 'n':
        *string += QLatin1Char('\n');
        return true;
    case 'r':
        *string += QLatin1Char('\r');
        return true;
    case 't':
        *string += QLatin1Char('\t');
        return true;
    case 'u':
        return ParseHex(string);
    default:
        return false;
    }
}

bool JsonParser::ParseHex(QString* string)
{
    if (end - at < 4)
        return false;
    ushort code = 0;
    for (int i = 0; i < 4; ++i, ++at) {
        const char digit = *at;
        const bool isDecimal = digit >= '0' && digit <= '9';
        const char lower = static_cast<char>(digit | 0x20);
        if (!isDecimal && (lower < 'a' || lower > 'f'))
            return false;
        code = static_cast<ushort>(code * 16 + (isDecimal ? digit - '0' : lower - 'a' + 10));
    }
    *string += QChar(code);
    return true;
}

int JsonParser::SkipDigits()
{
    const char* start = at;
    while (at != end && *at >= '0' && *at <= '9')
        ++at;
    return static_cast<int>(at - start);
}

bool JsonParser::Skip(char wanted)
{
    if (at == end || *at != wanted)
        return false;
    ++at;
    return true;
}

bool JsonParser::SkipWord(const char* word)
{
    const auto length = static_cast<qptrdiff>(std::strlen(word));
    if (end - at < length || std::strncmp(at, word, static_cast<size_t>(length)) != 0)
        return false;
    at += length;
    return true;
}

void JsonParser::SkipBlanks()
{
    while (at != end && (*at == ' ' || *at == '\t' || *at == '\n' || *at == '\r'))
        ++at;
}

OVSharedPtr<OVJson> OVJsonFactory::ParseJsonString(const char* text, int length, const OVJsonConfig*)
{
    if (!text)
        return nullptr;
    const size_t size = length >= 0 ? static_cast<size_t>(length) : std::strlen(text);
    if (size > static_cast<size_t>(maxJsonBytes))
        return nullptr;
    auto value = JsonParser(text, static_cast<int>(size)).ParseDocument();
    return value ? OVSharedPtr<OVJson>(new OVJson(std::move(value))) : nullptr;
}
