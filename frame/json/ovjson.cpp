#include "ovjson.h"

#include "json_value.h"

#include <climits>
#include <cmath>

namespace {

// The shortest decimal text that reads back as the same number.
QByteArray NumberText(double number)
{
    constexpr double largestExactInteger = 9007199254740992.0;
    if (std::floor(number) == number && std::fabs(number) <= largestExactInteger)
        return QByteArray::number(static_cast<qint64>(number));
    for (int digits = 6; digits < 17; ++digits) {
        const QByteArray text = QByteArray::number(number, 'g', digits);
        if (text.toDouble() == number)
            return text;
    }
    return QByteArray::number(number, 'g', 17);
}

} // namespace

int OVJson::Value::Find(const QByteArray& key) const
{
    return places.isEmpty() ? keys.indexOf(key) : places.value(key, -1);
}

void OVJson::Value::Put(const QByteArray& key, std::shared_ptr<Value> value)
{
    const int place = Find(key);
    if (place >= 0) {
        items[place] = std::move(value);
        return;
    }
    keys.append(key);
    items.append(std::move(value));
    if (!places.isEmpty()) {
        places.insert(key, keys.size() - 1);
    } else if (keys.size() >= indexedFrom) {
        for (int i = 0; i < keys.size(); ++i)
            places.insert(keys.at(i), i);
    }
}

bool OVJson::Value::Holds(const Value* wanted) const
{
    QVector<const Value*> pending{this};
    while (!pending.isEmpty()) {
        const Value* value = pending.takeLast();
        if (value == wanted)
            return true;
        for (const auto& item : value->items)
            pending.append(item.get());
    }
    return false;
}

QByteArray OVJson::Value::NumberAsText() const
{
    return NumberText(number);
}

std::shared_ptr<OVJson::Value> OVJson::Value::Make(Kind kind)
{
    auto value = std::make_shared<Value>();
    value->kind = kind;
    return value;
}

std::shared_ptr<OVJson::Value> OVJson::Value::MakeNumber(double number)
{
    auto value = Make(Number);
    value->number = std::isfinite(number) ? number : 0;
    return value;
}

std::shared_ptr<OVJson::Value> OVJson::Value::MakeString(const QString& text)
{
    auto value = Make(String);
    value->text = text;
    return value;
}

OVJson::OVJson()
    : value(Value::Make(Value::Object))
{
}

OVJson::OVJson(std::shared_ptr<Value> value)
    : value(std::move(value))
{
}

OVJson OVJson::MakeArray()
{
    return OVJson(Value::Make(Value::Array));
}

void OVJson::Set(const QByteArray& key, std::shared_ptr<Value> member)
{
    if (value->kind == Value::Object && !member->Holds(value.get()))
        value->Put(key, std::move(member));
}

void OVJson::Insert(int position, std::shared_ptr<Value> element)
{
    const int place = position == -1 ? value->items.size() : position;
    const bool isPlace = place >= 0 && place <= value->items.size();
    if (value->kind == Value::Array && isPlace && !element->Holds(value.get()))
        value->items.insert(place, std::move(element));
}

void OVJson::SetString(const QByteArray& key, const QString& text)
{
    Set(key, Value::MakeString(text));
}

void OVJson::SetInt(const QByteArray& key, int number)
{
    Set(key, Value::MakeNumber(number));
}

void OVJson::SetDouble(const QByteArray& key, double number)
{
    Set(key, Value::MakeNumber(number));
}

void OVJson::SetBool(const QByteArray& key, bool flag)
{
    auto member = Value::Make(Value::Bool);
    member->flag = flag;
    Set(key, member);
}

void OVJson::SetObject(const QByteArray& key, const OVJson& object)
{
    Set(key, object.value);
}

OVJson OVJson::AddArray(const QByteArray& key)
{
    OVJson array = MakeArray();
    Set(key, array.value);
    return array;
}

void OVJson::InsertUInt(int position, unsigned number)
{
    Insert(position, Value::MakeNumber(number));
}

void OVJson::InsertInt(int position, int number)
{
    Insert(position, Value::MakeNumber(number));
}

void OVJson::Append(const OVJson& element)
{
    Insert(-1, element.value);
}

void OVJson::Append(int number)
{
    Insert(-1, Value::MakeNumber(number));
}

void OVJson::Append(const QString& text)
{
    Insert(-1, Value::MakeString(text));
}

bool OVJson::IsObject() const
{
    return value->kind == Value::Object;
}

bool OVJson::IsArray() const
{
    return value->kind == Value::Array;
}

bool OVJson::IsString() const
{
    return value->kind == Value::String;
}

bool OVJson::IsNumber() const
{
    return value->kind == Value::Number;
}

int OVJson::Size() const
{
    return value->items.size();
}

OVJson OVJson::At(int position) const
{
    const auto item = value->items.value(position);
    return OVJson(item ? item : Value::Make(Value::Null));
}

int OVJson::MemberCount() const
{
    return value->keys.size();
}

QByteArray OVJson::KeyAt(int position) const
{
    return value->keys.value(position);
}

bool OVJson::HasMember(const QByteArray& key) const
{
    return value->Find(key) >= 0;
}

OVJson OVJson::Member(const QByteArray& key) const
{
    return At(value->Find(key));
}

int OVJson::ToInt(int defaultValue) const
{
    if (value->kind == Value::String) {
        bool isNumber = false;
        const int number = value->text.toInt(&isNumber);
        return isNumber ? number : defaultValue;
    }
    const double number = value->number;
    const bool isInt = value->kind == Value::Number && number >= INT_MIN && number <= INT_MAX;
    return isInt && std::floor(number) == number ? static_cast<int>(number) : defaultValue;
}

double OVJson::ToDouble(double defaultValue) const
{
    return value->kind == Value::Number ? value->number : defaultValue;
}

bool OVJson::ToBool(bool defaultValue) const
{
    return value->kind == Value::Bool ? value->flag : defaultValue;
}

QString OVJson::ToQString() const
{
    if (value->kind == Value::Number)
        return QString::fromLatin1(value->NumberAsText());
    return value->text;
}
