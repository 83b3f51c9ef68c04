#include "element_tree.h"

#include "xml_names.h"
#include "xml_scan.h"

#include <cstring>

namespace ofd {

namespace {

constexpr int NoNode = -1;

int EndOfName(const QByteArray& bytes, int begin)
{
    int at = begin + 1;
    while (at < bytes.size() && !std::strchr(" \t\r\n/>", bytes.at(at)))
        ++at;
    return at;
}

// Puts the elements of the pass into their places in the tree.
class TreeBuilder
{
public:
    TreeBuilder(std::vector<TreeElement>& elements, ElementTree::NodeTest isNode)
        : elements(elements)
        , isNode(isNode)
    {
    }

    bool IsComplete() const { return open.empty() && !elements.empty(); }

    void Open(const QByteArray& bytes, const XmlToken& token)
    {
        const int outer = open.empty() ? NoNode : open.back().element;
        const std::string_view name = TagName(bytes, token);
        const bool isInTree = open.empty() || (outer != NoNode && isNode(name.substr(name.find(':') + 1)));
        int added = NoNode;
        if (isInTree) {
            added = int(elements.size());
            TreeElement element;
            element.begin = int(token.begin);
            element.startTagEnd = element.contentEnd = element.end = int(token.end);
            element.parent = outer;
            elements.push_back(element);
            if (outer != NoNode)
                Link(outer, added);
        }
        if (token.kind == XmlToken::StartTag)
            open.push_back({added, NoNode});
    }

    void Close(const XmlToken& token)
    {
        if (open.empty())
            return;
        if (open.back().element != NoNode) {
            TreeElement& element = elements[size_t(open.back().element)];
            element.contentEnd = int(token.begin);
            element.end = int(token.end);
        }
        open.pop_back();
    }

private:
    struct OpenElement
    {
        int element; // NoNode for one that is no node
        int lastChild;
    };

    void Link(int outer, int added)
    {
        int& last = open.back().lastChild;
        if (last == NoNode)
            elements[size_t(outer)].firstChild = added;
        else
            elements[size_t(last)].nextSibling = added;
        last = added;
    }

    std::vector<TreeElement>& elements;
    const ElementTree::NodeTest isNode;
    std::vector<OpenElement> open;
};

} // namespace

QByteArray NameOfTag(const QByteArray& bytes, int begin)
{
    return bytes.mid(begin + 1, EndOfName(bytes, begin) - begin - 1);
}

ElementTree::ElementTree(const QByteArray& bytes, NodeTest isNode, qint64 begin)
    : ElementTree(std::make_shared<const PackedBytes>(bytes), isNode, begin)
{
}

ElementTree::ElementTree(std::shared_ptr<const PackedBytes> packedBytes, NodeTest isNode, qint64 begin)
    : bytes(std::move(packedBytes))
{
    const QByteArray& text = GetBytes();
    TreeBuilder builder(elements, isNode);
    XmlScanner scanner(text, begin);
    for (XmlToken token = scanner.Next(); token.kind != XmlToken::End; token = scanner.Next()) {
        if (token.kind == XmlToken::StartTag || token.kind == XmlToken::EmptyTag)
            builder.Open(text, token);
        else if (token.kind == XmlToken::EndTag)
            builder.Close(token);
        if (builder.IsComplete())
            break;
    }
    elements.shrink_to_fit();
}

std::vector<int> ElementTree::ChildrenOf(int element) const
{
    std::vector<int> children;
    for (int child = At(element).firstChild; child >= 0; child = At(child).nextSibling)
        children.push_back(child);
    return children;
}

QByteArray ElementTree::BytesOf(int element) const
{
    return GetBytes().mid(At(element).begin, At(element).end - At(element).begin);
}

QByteArray ElementTree::StartTagOf(int element) const
{
    return GetBytes().mid(At(element).begin, At(element).startTagEnd - At(element).begin);
}

QByteArray ElementTree::NameOf(int element) const
{
    return NameOfTag(GetBytes(), At(element).begin);
}

QByteArray ElementTree::WithPlaceHolders(int element, const QByteArray& placeHolder) const
{
    QByteArray result;
    int at = At(element).begin;
    for (int child = At(element).firstChild; child >= 0; child = At(child).nextSibling) {
        result.append(GetBytes().constData() + at, At(child).begin - at);
        result.append(placeHolder);
        at = At(child).end;
    }
    return result.append(GetBytes().constData() + at, At(element).end - at);
}

} // namespace ofd
