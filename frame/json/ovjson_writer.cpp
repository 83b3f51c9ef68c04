#include "json_value.h"

// Writes one value as text; used once. Goes down at most as deep as what can be read back.
class JsonWriter
{
public:
    explicit JsonWriter(bool indented)
        : indented(indented)
    {
    }
    bool Write(const OVJson::Value& value, int depth);
    const QByteArray& Text() const { return text; }

private:
    using Value = OVJson::Value;
    bool WriteContainer(const Value& value, int depth);
    void WriteString(const QString& string);
    void BreakLine(int depth);

    QByteArray text;
    bool indented;
};

bool JsonWriter::Write(const Value& value, int depth)
{
    switch (value.kind) {
    case Value::Null:
        text += "null";
        return true;
    case Value::Bool:
        text += value.flag ? "true" : "false";
        return true;
    case Value::Number:
        text += value.NumberAsText();
        return true;
    case Value::String:
        WriteString(value.text);
        return true;
    case Value::Array:
    case Value::Object:
        return WriteContainer(value, depth + 1);
    }
    return false;
}

bool JsonWriter::WriteContainer(const Value& value, int depth)
{
    if (depth > maxJsonDepth)
        return false;
    const bool isObject = value.kind == Value::Object;
    text += isObject ? '{' : '[';
    for (int i = 0; i < value.items.size(); ++i) {
        if (i > 0)
            text += ',';
        BreakLine(depth);
        if (isObject) {
            WriteString(QString::fromUtf8(value.keys.at(i)));
            text += indented ? ": " : ":";
        }
        if (!Write(*value.items.at(i), depth))
            return false;
    }
    if (!value.items.isEmpty())
        BreakLine(depth - 1);
    text += isObject ? '}' : ']';
    return true;
}

void JsonWriter::WriteString(const QString& string)
{
    static const char hexDigits[] = "0123456789abcdef";
    text += '"';
    const QByteArray bytes = string.toUtf8();
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (byte == '"' || byte == '\\') {
            text += '\\';
            text += byte;
        } else if (byte == '\n') {
            text += "\\n";
        } else if (byte == '\t') {
            text += "\\t";
        } else if (byte == '\r') {
            text += "\\r";
        } else if (code < 0x20) {
            text += "\\u00";
            text += hexDigits[code >> 4];
            text += hexDigits[code & 0xf];
        } else {
            text += byte;
        }
    }
    text += '"';
}

void JsonWriter::BreakLine(int depth)
{
    if (!indented)
        return;
    text += '\n';
    text += QByteArray(depth * 4, ' ');
}

QByteArray OVJsonFactory::BuildJsonString(const OVSharedPtr<OVJson>& value, const OVJsonConfig* config)
{
    if (!value)
        return QByteArray();
    JsonWriter writer(config && config->indented);
    return writer.Write(*value->value, 0) ? writer.Text() : QByteArray();
}
