"""A PDF with the same pages and outline as `make_samples --report` writes as OFD: what other readers open."""


class PdfWriter:
    """Numbers objects and writes them with a cross-reference table."""

    def __init__(self):
        self.objects = []

    def add(self, body=None):
        self.objects.append(body)
        return len(self.objects)

    def set(self, number, body):
        self.objects[number - 1] = body

    def write(self, path, root):
        with open(path, 'wb') as out:
            out.write(b'%PDF-1.5\n')
            offsets = []
            for number, body in enumerate(self.objects, 1):
                offsets.append(out.tell())
                out.write(f'{number} 0 obj\n{body}\nendobj\n'.encode())
            table = out.tell()
            out.write(f'xref\n0 {len(offsets) + 1}\n0000000000 65535 f \n'.encode())
            out.write(''.join(f'{offset:010d} 00000 n \n' for offset in offsets).encode())
            out.write(f'trailer<</Size {len(offsets) + 1}/Root {root} 0 R>>\nstartxref\n{table}\n%%EOF'.encode())


def add_page(pdf, tree, font, number):
    lines = ' '.join(f'(Page {number} line {j} of the report with some words in it) Tj T*' for j in range(50))
    text = f'BT /F1 12 Tf 50 800 Td 14 TL {lines} ET'
    content = pdf.add(f'<</Length {len(text)}>>stream\n{text}\nendstream')
    return pdf.add(f'<</Type/Page/Parent {tree} 0 R/MediaBox[0 0 595 842]/Contents {content} 0 R'
                   f'/Resources<</Font<</F1 {font} 0 R>>>>>>')


def add_chapter(pdf, pages, head, chapter, size):
    first = len(pdf.objects) + 1
    for k in range(size):
        links = (f'/Next {first + k + 1} 0 R' if k < size - 1 else '') + (f'/Prev {first + k - 1} 0 R' if k else '')
        page = pages[(chapter * size + k) % len(pages)]
        pdf.add(f'<</Title(Chapter {chapter} section {k})/Parent {head} 0 R/Dest[{page} 0 R/XYZ 0 800 0]{links}>>')
    return f'/First {first} 0 R/Last {first + size - 1} 0 R' if size else ''


def add_outline(pdf, pages, entries):
    root = pdf.add()
    groups = max(1, entries // 100)
    heads = [pdf.add() for _ in range(groups)]
    size = max(0, entries // groups - 1)
    for g, head in enumerate(heads):
        inner = add_chapter(pdf, pages, head, g, size)
        links = (f'/Next {heads[g + 1]} 0 R' if g < groups - 1 else '') + (f'/Prev {heads[g - 1]} 0 R' if g else '')
        pdf.set(head, f'<</Title(Chapter {g})/Parent {root} 0 R/Dest[{pages[g % len(pages)]} 0 R/Fit]'
                      f'/Count {size}{inner}{links}>>')
    pdf.set(root, f'<</Type/Outlines/First {heads[0]} 0 R/Last {heads[-1]} 0 R/Count {entries}>>')
    return f'/Outlines {root} 0 R/PageMode/UseOutlines'


def make_pdf(page_count, entries, path):
    pdf = PdfWriter()
    catalog, tree = pdf.add(), pdf.add()
    font = pdf.add('<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>')
    pages = [add_page(pdf, tree, font, i + 1) for i in range(page_count)]
    pdf.set(tree, f'<</Type/Pages/Count {page_count}/Kids[{" ".join(f"{page} 0 R" for page in pages)}]>>')
    outlines = add_outline(pdf, pages, entries) if entries else ''
    pdf.set(catalog, f'<</Type/Catalog/Pages {tree} 0 R{outlines}>>')
    pdf.write(path, catalog)
