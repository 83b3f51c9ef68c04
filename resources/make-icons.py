#!/usr/bin/env python3
"""Draws every picture of the resource trees: run it in this folder after a change, and commit its output with it.

One style: line icons on a 24 x 24 grid with 1.5 strokes, ink and one accent; a disabled variant is the same drawing in
one grey. File types are coloured 32 x 32 sheets whose letters are strokes, since a text element would depend on the
fonts of the machine. Pictures for empty lists are 120 x 112. The spinner is a GIF that this script encodes itself."""
import math
import os
import struct
import zlib

INK, ACCENT, GREY, SOFT = '#36425A', '#2F6FDE', '#B8BEC9', '#D9E5FB'
ROOT = os.path.dirname(os.path.abspath(__file__))


def write(name, text):
    path = os.path.join(ROOT, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, 'wb') as f:
        f.write(text if isinstance(text, bytes) else text.encode())


def svg(body, width, height):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
            f'viewBox="0 0 {width} {height}">\n{body}\n</svg>\n')


def line_icon(shapes, ink=INK, accent=ACCENT, soft=SOFT, size=24, stroke=1.5):
    """shapes: a list of (kind, data); see draw()."""
    body = '\n'.join(draw(kind, data, ink, accent, soft) for kind, data in shapes)
    return svg(f'<g fill="none" stroke-width="{stroke}" stroke-linecap="round" stroke-linejoin="round">\n{body}\n</g>',
               size, size)


def draw(kind, data, ink, accent, soft):
    """i and a: stroke in ink or accent; I and A: fill; s: soft fill; d: dashed accent; w: white fill with ink stroke."""
    paint = {
        'i': f'stroke="{ink}"', 'a': f'stroke="{accent}"',
        'I': f'fill="{ink}" stroke="none"', 'A': f'fill="{accent}" stroke="none"',
        's': f'fill="{soft}" stroke="none"', 'd': f'stroke="{accent}" stroke-dasharray="2.5 2.5"',
        'w': f'fill="#FFFFFF" stroke="{ink}"', 'W': 'fill="none" stroke="#FFFFFF"',
    }[kind]
    return f'<path {paint} d="{data}"/>'


def circle(x, y, r, ry=None):
    ry = ry or r
    return f'M{x - r} {y}A{r} {ry} 0 1 0 {x + r} {y}A{r} {ry} 0 1 0 {x - r} {y}Z'


def rect(x, y, w, h, r=0):
    if not r:
        return f'M{x} {y}h{w}v{h}h{-w}Z'
    return (f'M{x + r} {y}h{w - 2 * r}a{r} {r} 0 0 1 {r} {r}v{h - 2 * r}a{r} {r} 0 0 1 {-r} {r}h{-(w - 2 * r)}'
            f'a{r} {r} 0 0 1 {-r} {-r}v{-(h - 2 * r)}a{r} {r} 0 0 1 {r} {-r}Z')


def star(x, y, r, inner=0.42):
    points = []
    for k in range(10):
        radius = r if k % 2 == 0 else r * inner
        angle = -math.pi / 2 + k * math.pi / 5
        points.append(f'{x + radius * math.cos(angle):.2f} {y + radius * math.sin(angle):.2f}')
    return 'M' + 'L'.join(points) + 'Z'


# Shapes that several pictures share.
PLUS = 'M12 5v14M5 12h14'
CROSS = 'M6.5 6.5l11 11M17.5 6.5l-11 11'
TAG = 'M3.5 4.75v6.1a2 2 0 0 0 .6 1.4l7.6 7.6a1.6 1.6 0 0 0 2.3 0l6-6a1.6 1.6 0 0 0 0-2.3L12.4 3.9a2 2 0 0 0-1.4-.65H5a1.5 1.5 0 0 0-1.5 1.5Z'
CLIP = 'M19.5 11.2l-7.6 7.6a4.7 4.7 0 0 1-6.7-6.7l8-8a3.2 3.2 0 0 1 4.5 4.5l-7.9 7.9a1.6 1.6 0 0 1-2.3-2.3l7-7'
BUBBLE = 'M5.5 4.5h13a2 2 0 0 1 2 2v8a2 2 0 0 1-2 2h-6.6l-4.4 3.6v-3.6h-2a2 2 0 0 1-2-2v-8a2 2 0 0 1 2-2Z'
LETTER_A = 'M7 16L12 4.5L17 16M8.8 12.2h6.4'
LENS = circle(10.5, 10.5, 6) + 'M15 15l5 5'
TRAY = 'M4 14.5v3.5a2 2 0 0 0 2 2h12a2 2 0 0 0 2-2v-3.5'
SHEET = 'M6.5 3.5h8l4 4v13h-12ZM14.5 3.5v4h4'
FUNNEL = 'M4 5.5h16l-6.2 7.3v5.2l-3.6 1.9v-7.1Z'
CHAIN = ('M10 14a4 4 0 0 0 5.7 0l3.2-3.2a4 4 0 0 0-5.7-5.7l-1.4 1.4'
         'M14 10a4 4 0 0 0-5.7 0l-3.2 3.2a4 4 0 0 0 5.7 5.7l1.4-1.4')
BIN = 'M4.5 6.5h15M9.5 6.5v-2h5v2M6.5 6.5l.8 12a1.6 1.6 0 0 0 1.6 1.5h6.2a1.6 1.6 0 0 0 1.6-1.5l.8-12'
PENCIL = 'M4.5 19.5l1-4.2L16 4.8a1.6 1.6 0 0 1 2.3 0l.9.9a1.6 1.6 0 0 1 0 2.3L8.7 18.5ZM14 6.8l3.2 3.2'
RIBBON = 'M7 3.75h10a1 1 0 0 1 1 1V20.5l-6-4.2l-6 4.2V4.75a1 1 0 0 1 1-1Z'
BOX16 = rect(4, 4, 16, 16, 2.5)


def node_icons():
    pairs = {  # name with %s for normal and disabled
        'btn_add_%s': [('a', PLUS)],
        'btn_del_%s': [('i', BIN), ('a', 'M10 10.5v5.5M14 10.5v5.5')],
        'btn_export_customtag_%s': [('i', TRAY), ('a', 'M12 15.5V4M7.5 8.5L12 4l4.5 4.5')],
        'btn_import_customtag_%s': [('i', TRAY), ('a', 'M12 4v11.5M7.5 11L12 15.5L16.5 11')],
    }
    plain = {
        'actionselect': [('d', rect(3.5, 3.5, 14, 14, 2)), ('w', 'M10.5 10l9.5 3.8l-4.2 1.6l-1.7 4.3Z')],
        'close': [('i', CROSS)],
        'collapse': [('i', 'M4 12h16'), ('a', 'M8.5 4l3.5 4l3.5-4M8.5 20l3.5-4l3.5 4')],
        'expand': [('i', 'M4 12h16'), ('a', 'M8.5 8l3.5-4l3.5 4M8.5 16l3.5 4l3.5-4')],
        'cursor_customtag': [('i', 'M7 1.5v11M1.5 7h11'),
                             ('s', 'M11.5 12v4.6l5 5l5-5l-4.8-4.6Z'), ('a', 'M11.5 12v4.6l5 5l5-5l-4.8-4.6Z'),
                             ('A', circle(14.1, 14.5, 1))],
        'customtag_down': [('i', 'M5.5 9l6.5 6.5L18.5 9')],
        'customtag_up': [('i', 'M5.5 15.5L12 9l6.5 6.5')],
        'ico': [('s', rect(2.5, 3.5, 15, 6, 1.5)), ('a', rect(2.5, 3.5, 15, 6, 1.5)), ('a', 'M5.5 6.5h6'),
                ('w', 'M11 10.5l9.5 3.8l-4.2 1.6l-1.7 4.3Z')],
        'more': [('I', circle(5.5, 12, 1.6) + circle(12, 12, 1.6) + circle(18.5, 12, 1.6))],
        'remark': [('i', BUBBLE), ('a', 'M7.5 9h9M7.5 12.2h6')],
        'select': [('s', BOX16), ('a', BOX16), ('a', 'M7.8 12.2l3 3l5.6-6')],
        'unselect': [('i', BOX16)],
    }
    export = [('i', 'M13 20.5H6.5v-17h8l4 4V11M14.5 3.5v4h4'), ('a', 'M12 15.5h9M17.5 12l3.5 3.5l-3.5 3.5')]
    folder = [('i', 'M3.5 18.5v-12a1.5 1.5 0 0 1 1.5-1.5h4.2l2 2.5h6.3a1.5 1.5 0 0 1 1.5 1.5v1.5'),
              ('a', 'M3.8 18.8l2.6-7.4a1.4 1.4 0 0 1 1.3-.9h12.6l-2.8 7.6a1.4 1.4 0 0 1-1.3.9H4.3')]
    for name, shapes in pairs.items():
        write(f'nodeQrc/image/{name % "normal"}.svg', line_icon(shapes))
        write(f'nodeQrc/image/{name % "disabled"}.svg', line_icon(shapes, GREY, GREY, '#EEF0F3'))
    for name, shapes in plain.items():
        write(f'nodeQrc/image/{name}.svg', line_icon(shapes))
    # The last of these names is spelled so in the style sheets that use it.
    for name, shapes in (('export_attachment', export), ('open_attachment', folder)):
        write(f'nodeQrc/image/{name}.svg', line_icon(shapes))
    write('nodeQrc/image/export_attachment_disabled.svg', line_icon(export, GREY, GREY))
    write('nodeQrc/image/open_attachmet_disabled.svg', line_icon(folder, GREY, GREY))
    write('nodeQrc/image/loading.gif', spinner_gif(48, 12))


def annotation_controls():
    sort = [('i', 'M4 6h9M4 12h7M4 18h5'), ('a', 'M17 5v14M13.8 15.8L17 19l3.2-3.2')]
    icons = {
        'annot_expand': [('I', 'M4.5 8h15L12 17Z')],
        'annot_putaway': [('I', 'M8 4.5v15L17 12Z')],
        'annot_lineedit_close': [('s', circle(12, 12, 8.5)), ('i', circle(12, 12, 8.5)), ('i', 'M9 9l6 6M15 9l-6 6')],
        'annotation_hide': [('i', 'M2.8 12c2.4-4.3 5.5-6.5 9.2-6.5s6.8 2.2 9.2 6.5c-2.4 4.3-5.5 6.5-9.2 6.5S5.2 16.3 2.8 12Z'
                                  + circle(12, 12, 3)), ('a', 'M4.5 20L19.5 4')],
        'btn_annot_screen': [('i', FUNNEL)],
        'btn_annot_screen_disabled': [('i', FUNNEL)],
        'btn_annot_sort': sort,
        'btn_annot_sort_disabled': sort,
        'btn_search_annot': [('i', LENS)],
        'btn_searchannot_disabled': [('i', LENS)],
        'checkbox_deselect': [('i', BOX16)],
        'checkbox_partiallychecked': [('a', BOX16), ('A', rect(7.5, 10.6, 9, 2.8, 1))],
        'checkbox_select': [('A', rect(3.3, 3.3, 17.4, 17.4, 3)), ('W', 'M7.5 12.2l3.1 3.1l6-6.4')],
    }
    for name, shapes in icons.items():
        ink, accent = (GREY, GREY) if name.endswith('_disabled') else (INK, ACCENT)
        write(f'annotation/image/{name}.svg', line_icon(shapes, ink, accent))


def text_types():
    """Annotation types that mark or correct text."""
    return {
        'anotherparagraph': [('i', 'M4 5h16M4 9h16'), ('a', 'M20 13v3.2a1.8 1.8 0 0 1-1.8 1.8H8M11.2 14.8L8 18l3.2 3.2')],
        'chapter': [('i', 'M12 6.5c-2-1.5-4.7-2-8-2v13c3.3 0 6 .5 8 2c2-1.5 4.7-2 8-2v-13c-3.3 0-6 .5-8 2Z'),
                    ('a', 'M12 6.5v13')],
        'continueline': [('i', 'M4 6h9M11 18h9'), ('a', 'M15.5 6h1.2a3 3 0 0 1 0 6H7.3a3 3 0 0 0 0 6h1')],
        'exchange': [('i', 'M4.5 18.5h4M15.5 18.5h4'), ('a', 'M4.5 13.5V9a3.75 3.75 0 0 1 7.5 0v3a3.75 3.75 0 0 0 7.5 0V7M17 9.5L19.5 7L22 9.5')],
        'freetext': [('d', rect(3.5, 3.5, 17, 17, 1.5)), ('i', 'M8 9V7.5h8V9M12 7.5v9M10.3 16.5h3.4')],
        'highlight': [('s', rect(3, 10, 18, 9, 1)), ('i', LETTER_A), ('a', 'M4 19.5h16')],
        'increasespace': [('i', 'M12 4v16'), ('a', 'M9 12H3M5.8 9.2L3 12l2.8 2.8M15 12h6M18.2 9.2L21 12l-2.8 2.8')],
        'insertline': [('i', 'M4 5.5h16M4 18.5h16'), ('a', 'M4 12h7M15 9v6M12 12h8')],
        'moveback': [('i', 'M4.5 5v14'), ('a', 'M20 12H8.5M12.5 8L8.5 12l4 4')],
        'moveforward': [('i', 'M19.5 5v14'), ('a', 'M4 12h11.5M11.5 8l4 4l-4 4')],
        'movedout': [('i', 'M11 5H5.5a1.5 1.5 0 0 0-1.5 1.5v11a1.5 1.5 0 0 0 1.5 1.5h11a1.5 1.5 0 0 0 1.5-1.5V13'),
                     ('a', 'M11.5 12.5L20 4M14.5 4H20v5.5')],
        'reducespace': [('i', 'M12 4v16'), ('a', 'M3 12h6M6.2 9.2L9 12l-2.8 2.8M21 12h-6M17.8 9.2L15 12l2.8 2.8')],
        'replace': [('i', 'M2.8 19L6.8 8.5L10.8 19M4.2 15.4h5.2'), ('a', 'M2 13.6h10'),
                    ('i', 'M15.5 8.5v10.5h3a2.9 2.9 0 0 0 0-5.8h-3M18 13.2a2.35 2.35 0 0 0 0-4.7h-2.5'), ('a', 'M7 5.5C10 3 14.5 3 17.5 5.5M17.8 2.8v2.9h-2.9')],
        'squiggly': [('i', LETTER_A), ('a', 'M4 19.8c1.3-2 2.7-2 4 0s2.7 2 4 0s2.7-2 4 0s2.7 2 4 0')],
        'strikeout': [('i', LETTER_A), ('a', 'M4 11h16')],
        'switchfont': [('i', 'M3 17L7 6.5L11 17M4.4 13.5h5.2'), ('i', circle(16, 13.8, 3.1) + 'M19.1 10.7v6.3'),
                       ('a', 'M4.5 20.5h15M17.5 18.5l2 2l-2 2')],
        'underline': [('i', 'M7 4.5v6.5a5 5 0 0 0 10 0V4.5'), ('a', 'M5 19.5h14')],
    }


def drawing_types():
    """Annotation types that are drawn shapes or strokes."""
    return {
        'arrow': [('i', 'M4.5 19.5L19 5M11.5 5H19v7.5')],
        'cloud': [('i', 'M7 18.5a4.2 4.2 0 0 1-.6-8.4a5.8 5.8 0 0 1 11.2-.6a4.6 4.6 0 0 1-.4 9Z')],
        'ellipse': [('i', circle(12, 12, 9, 6.2))],
        'fluorescent': [('i', 'M9.5 13.5l7-8.7a1.5 1.5 0 0 1 2.1-.2l1.2 1a1.5 1.5 0 0 1 .2 2.1l-7 8.7l-3.4.3Z'),
                        ('i', 'M9.6 16.6l-2 2.2'), ('a', 'M3.5 20.5h17')],
        'line': [('i', 'M5 19L19 5')],
        'path': [('i', 'M5.5 17c1-9 6-1.5 7-6.5c.6-3.2 3-4 6-4'), ('a', circle(5.5, 18.5, 1.8) + circle(19.5, 6, 1.8))],
        'pen': [('i', 'M5 19l1.8-7.5L15 5.5l3.5 3.5l-6 8.2ZM5 19l5-5'), ('i', 'M14 4.5l1-1l5.5 5.5l-1 1'), ('a', circle(10.8, 13.2, 1.2))],
        'pencil': [('i', PENCIL), ('a', 'M13 20.5h7.5')],
        'polygon': [('i', 'M12 3.8l8.3 6.1l-3.2 9.8H6.9L3.7 9.9Z')],
        'polyline': [('i', 'M3.5 18l5-10l5 7l6.5-10')],
        'rectangle': [('i', rect(3.5, 5.5, 17, 13, 1))],
        'rectmask': [('s', rect(3.5, 5.5, 17, 13, 1)), ('i', rect(3.5, 5.5, 17, 13, 1)),
                     ('a', 'M5.5 14l6-6M8.5 16.5l8.5-8.5M14 16.5l4.5-4.5')],
        'tabletdlg': [('i', rect(3.5, 5, 13, 14, 1.8) + 'M9 16.3h2'), ('a', 'M21 4.5l-9 9l-.7 2l2-.7l8.5-8.5')],
        'watercolor': [('i', 'M19.8 4.2c-4 1.6-7.4 4.7-9.9 8.6l2.3 2.3c3.9-2.5 6.4-6.9 7.6-10.9Z'),
                       ('a', 'M9.2 13.7c-2.3 0-3.4 1.4-3.6 3.3c-.1 1.3-.8 2-2.1 2.4c3.5 1.6 8.3.8 8.5-3.1')],
    }


def object_types():
    """Annotation types that put an object on the page."""
    seal = [('i', circle(12, 12, 8.7)), ('A', star(12, 12.2, 4.6))]
    return {
        'affix': [('i', CLIP)],
        'datestamp': [('i', rect(4, 5.5, 16, 14.5, 1.5) + 'M4 10h16M8.5 3.5v4M15.5 3.5v4'), ('a', 'M8.5 15l2.5 2.4l4.5-4.6')],
        'link': [('i', CHAIN)],
        'none': [('i', circle(12, 12, 8.3)), ('a', 'M6.2 17.8L17.8 6.2')],
        'notebox': [('i', 'M4.5 4.5h15v10l-5 5h-10ZM14.5 19.5v-5h5'), ('a', 'M8 8.5h8M8 12h5')],
        'other': [('i', circle(12, 12, 8.3)), ('A', circle(8.2, 12, 1.15) + circle(12, 12, 1.15) + circle(15.8, 12, 1.15))],
        'preseal': [('d', circle(12, 12, 8.7)), ('i', star(12, 12.2, 4.6))],
        'seal': seal,
        'stamp': [('i', 'M9.8 12.5c.4-2-1.3-3.2-1.3-5.2a3.5 3.5 0 0 1 7 0c0 2-1.7 3.2-1.3 5.2M5 16.5v-2a2 2 0 0 1 2-2h10a2 2 0 0 1 2 2v2Z'),
                  ('a', 'M4.5 20h15')],
        'watermark': [('i', SHEET), ('a', 'M9 17l6.5-6.5M9 13l4-4M12 18l3.5-3.5')],
    }


def annotation_types():
    for family in (text_types(), drawing_types(), object_types()):
        for name, shapes in family.items():
            write(f'annotation/image/type_{name}.svg', line_icon(shapes))


def catalog_icons():
    tree = [('i', 'M3.5 5h9M4.8 8.5V19h7.7M4.8 12h7.7')]
    pairs = {
        'btn_expand_outline': tree + [('a', 'M18 9v6M15 12h6')],
        'btn_collapse_outline': tree + [('a', 'M15 12h6')],
        'down_triangle': [('I', 'M5.5 9h13L12 16.5Z')],
    }
    for name, shapes in pairs.items():
        write(f'catalog/image/{name}_normal.svg', line_icon(shapes))
        write(f'catalog/image/{name}_disabled.svg', line_icon(shapes, GREY, GREY))


# Stroke letters on a 4 x 6 grid.
LETTERS = {
    'A': 'M0 6L2 0L4 6M.8 3.9h2.4', 'B': 'M0 0v6h2.2a1.6 1.5 0 0 0 0-3.1h-2.2M2 2.9a1.4 1.45 0 0 0 0-2.9h-2',
    'C': 'M4 1.1A2.2 2.6 0 0 0 0 3A2.2 2.6 0 0 0 4 4.9', 'D': 'M0 0v6h1.3a2.7 3 0 0 0 0-6Z',
    'E': 'M3.6 0H0v6h3.6M0 3h3', 'F': 'M3.6 0H0v6M0 3h3', 'G': 'M4 1.1A2.2 2.6 0 0 0 0 3A2.2 2.6 0 0 0 4 5V3.3H2.4',
    'J': 'M3.2 0v4.3a1.6 1.7 0 0 1-3.2 0', 'L': 'M0 0v6h3.6', 'O': circle(2, 3, 2, 3),
    'P': 'M0 6V0h2.1a1.75 1.75 0 0 1 0 3.5H0', 'S': 'M3.7 1C3 -.3 .3-.3 .3 1.5C.3 3.4 3.9 2.6 3.9 4.5C3.9 6.4 .8 6.4 0 4.9',
    'T': 'M0 0h4M2 0v6', 'W': 'M-.6 0L.9 6L2 1.4L3.1 6L4.6 0', 'X': 'M0 0L4 6M4 0L0 6', 'Z': 'M0 0h4L0 6h4',
}


def letters(text, scale=1.0, x_mid=16.0, y_mid=21.0):
    pitch = 5.7
    width = pitch * (len(text) - 1) + 4
    parts = []
    for k, ch in enumerate(text):
        x, y = x_mid - width * scale / 2 + k * pitch * scale, y_mid - 3 * scale
        parts.append(f'<path transform="translate({x:.2f} {y:.2f}) scale({scale})" stroke-width="{1.5 / scale:.2f}" d="{LETTERS[ch]}"/>')
    return '\n'.join(parts)


def sheet(colour, motif):
    return svg(f'<path fill="{colour}" d="M7 2h13l7 7v19a2 2 0 0 1-2 2H7a2 2 0 0 1-2-2V4a2 2 0 0 1 2-2Z"/>\n'
               f'<path fill="#FFFFFF" fill-opacity="0.45" d="M20 2l7 7h-5a2 2 0 0 1-2-2Z"/>\n'
               f'<g fill="none" stroke="#FFFFFF" stroke-width="1.5" stroke-linecap="round" stroke-linejoin="round">\n{motif}\n</g>',
               32, 32)


def attachment_types():
    worded = {'AFT': ('#5B6F95', 'AFT'), 'CEB': ('#3F7F8C', 'CEB'), 'EDC': ('#7A6BB0', 'EDC'), 'OPG': ('#A0668B', 'OPG'),
              'PS': ('#6D7A38', 'PS'), 'caj': ('#3E7CB8', 'CAJ'), 'gd': ('#B0702F', 'GD'), 'ofd': ('#2F6FDE', 'OFD'),
              'pdf': ('#D2453C', 'PDF'), 'sfd': ('#2E8F7B', 'SFD')}
    single = {'docx': ('#2C5FB8', 'W'), 'exl': ('#23865A', 'X'), 'ppt': ('#D1652F', 'P')}
    drawn = {
        'largeFile': ('#7E8796', '<path d="M16 13v11M11.5 17.5L16 13l4.5 4.5M10.5 26.5h11M10.5 10.5h5"/>'),
        'mp4': ('#7B4FC9', '<path fill="#FFFFFF" d="M12.5 14.5v10l8.5-5Z"/>'),
        'music': ('#C9488B', '<path d="M13.5 23.5v-9l7-1.8v9"/><path fill="#FFFFFF" d="M13.5 23.7a2 1.7 0 1 1-4 0a2 1.7 0 1 1 4 0Z'
                             'M20.5 21.9a2 1.7 0 1 1-4 0a2 1.7 0 1 1 4 0Z"/>'),
        'other': ('#98A1B0', '<path d="M13 16.2a3 3 0 1 1 4.4 2.7c-1 .5-1.4 1-1.4 2.1"/><path fill="#FFFFFF" d="M16 24.4v.2"/>'),
        'picture': ('#2F9E9B', '<path d="M9.5 24.5l4.3-6l3 3.6l2.2-2.4l3.6 4.8Z"/><path fill="#FFFFFF" d="M20.5 14.2a1.3 1.3 0 1 1-2.6 0a1.3 1.3 0 1 1 2.6 0Z"/>'),
        'txt': ('#6C7890', '<path d="M10 14h12M10 18h12M10 22h12M10 26h7"/>'),
        'xml': ('#4A8A3C', '<path d="M12.5 16L8.8 20l3.7 4M19.5 16l3.7 4l-3.7 4M17.2 14.8l-2.4 10.4"/>'),
        'zip': ('#C9982B', '<path d="M14.5 4.5h3M14.5 8h3M14.5 11.5h3M14.5 15h3M16 6.2h0M16 9.7h0"/>'
                           '<path d="M13.8 18.5h4.4v5.2a1.2 1.2 0 0 1-1.2 1.2h-2a1.2 1.2 0 0 1-1.2-1.2ZM16 21.5v1"/>'),
    }
    for name, (colour, text) in worded.items():
        write(f'attachType/image/{name}.svg', sheet(colour, letters(text, 1.02 if len(text) == 3 else 1.3)))
    for name, (colour, text) in single.items():
        write(f'attachType/image/{name}.svg', sheet(colour, letters(text, 1.75, y_mid=19.5)))
    for name, (colour, motif) in drawn.items():
        write(f'attachType/image/{name}.svg', sheet(colour, motif))


def empty_picture(motif):
    """A resting sheet with a motif that says what the list would hold."""
    scene = ('<path fill="#EDF0F5" d="M16 96a44 8 0 1 0 88 0a44 8 0 1 0-88 0Z"/>\n'
             '<path fill="#F9FBFE" stroke="#C3CBD9" d="M38 16h34l14 14v58a4 4 0 0 1-4 4H38a4 4 0 0 1-4-4V20a4 4 0 0 1 4-4Z"/>\n'
             '<path fill="#E3EAF6" stroke="#C3CBD9" d="M72 16v10a4 4 0 0 0 4 4h10Z"/>\n'
             '<path stroke="#D8DEE8" d="M44 34h18M44 44h30"/>\n'
             '<path stroke="#D3DCEB" d="M18 40v8M14 44h8M100 22v6M97 25h6"/>\n')
    return svg(f'<g fill="none" stroke-width="2" stroke-linecap="round" stroke-linejoin="round">\n{scene}{motif}\n</g>', 120, 112)


def empty_pictures():
    blue, light = '#8FB0EA', '#DCE8FC'
    motifs = {
        'bookmark': f'<path fill="{light}" stroke="{blue}" d="M70 50h22a2 2 0 0 1 2 2v36l-13-9l-13 9V52a2 2 0 0 1 2-2Z"/>',
        'annotation': f'<path fill="{light}" stroke="{blue}" d="M62 54h32a4 4 0 0 1 4 4v18a4 4 0 0 1-4 4H80l-9 8v-8h-9a4 4 0 0 1-4-4V58a4 4 0 0 1 4-4Z"/>'
                      f'<path stroke="{blue}" d="M66 63h24M66 71h15"/>',
        'attachment': f'<path stroke="{blue}" stroke-width="3" d="M97 66L79 84a9.5 9.5 0 0 1-13.4-13.4l18.6-18.6a6.4 6.4 0 0 1 9 9L74.8 79.4a3.2 3.2 0 0 1-4.5-4.5L86 59"/>',
        'customtag': f'<path fill="{light}" stroke="{blue}" d="M62 50h15a4 4 0 0 1 2.8 1.2l17.4 17.4a3.4 3.4 0 0 1 0 4.8L82.4 88.2a3.4 3.4 0 0 1-4.8 0L60.2 70.8A4 4 0 0 1 59 68V53a3 3 0 0 1 3-3Z"/>'
                     f'<path fill="#FFFFFF" stroke="{blue}" d="M71 59a3 3 0 1 1-6 0a3 3 0 1 1 6 0Z"/>',
        'outline': f'<path fill="{light}" stroke="{blue}" d="M58 52h40v34a3 3 0 0 1-3 3H61a3 3 0 0 1-3-3Z"/>'
                   f'<path stroke="{blue}" d="M66 61h0M72 61h18M70 70h0M76 70h14M70 79h0M76 79h10"/>',
    }
    for name, motif in motifs.items():
        write(f'nocontent/image/nocontent_{name}.svg', empty_picture(motif))


def host_icons():
    panes = {
        'vn_outline': [('i', 'M8.5 6h11.5M11.5 12h8.5M11.5 18h8.5'), ('a', 'M4.5 6h.01M4.5 6v12h3.5M4.5 12h3.5')],
        'vn_customtag': [('i', TAG), ('a', circle(8.2, 8, 1.5))],
        'vn_bookmark': [('i', RIBBON), ('a', 'M9.5 8.5h5')],
        'vn_attachment': [('i', CLIP)],
        'vn_annotation': [('i', BUBBLE), ('a', 'M7.5 9h9M7.5 12.2h6')],
        'vn_layers': [('i', 'M12 3.5l9 4.7l-9 4.7l-9-4.7Z'), ('a', 'M3 12.3l9 4.7l9-4.7M3 16.3l9 4.7l9-4.7')],
    }
    for name, shapes in panes.items():
        write(f'core/res/icons/navi/{name}.svg', line_icon(shapes))
    for name, shapes in reader_toolbar().items():
        write(f'reader/image/{name}.svg', line_icon(shapes))
        write(f'reader/image/{name}_disabled.svg', line_icon(shapes, GREY, GREY, '#EEF0F3'))
    write('reader/image/tetoreader.svg', application_icon())
    # The arrows of a tree: style sheets ask for them as PNG, and for the doubled ones on fine screens.
    for name, triangle in {'collapse': [(6, 4), (11, 8), (6, 12)], 'expand': [(4, 6), (12, 6), (8, 11)]}.items():
        for scale, suffix in ((1, ''), (2, '@2x')):
            write(f'core/res/icons/navi/{name}{suffix}.png', triangle_png(triangle, 16, scale))


def triangle_png(corners, size, scale):
    """A filled triangle in ink as an RGBA image, its edges smoothed by 8 x 8 samples a pixel."""
    colour = bytes(int(INK[k:k + 2], 16) for k in (1, 3, 5))
    grain, side = 8, size * scale

    def inside(x, y):
        turns = [(bx - ax) * (y - ay) - (by - ay) * (x - ax)
                 for (ax, ay), (bx, by) in zip(corners, corners[1:] + corners[:1])]
        return all(t >= 0 for t in turns) or all(t <= 0 for t in turns)

    rows = bytearray()
    for y in range(side):
        rows.append(0)  # no filter
        for x in range(side):
            hits = sum(inside((x + (i + 0.5) / grain) / scale, (y + (j + 0.5) / grain) / scale)
                       for i in range(grain) for j in range(grain))
            rows += colour + bytes([round(255 * hits / grain ** 2)])

    def chunk(kind, data):
        return struct.pack('>I', len(data)) + kind + data + struct.pack('>I', zlib.crc32(kind + data))

    header = struct.pack('>IIBBBBB', side, side, 8, 6, 0, 0, 0)
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) + chunk(b'IDAT', zlib.compress(bytes(rows), 9)) +
            chunk(b'IEND', b''))


def reader_toolbar():
    disk = 'M4 5.5a1.5 1.5 0 0 1 1.5-1.5h11l3.5 3.5v11a1.5 1.5 0 0 1-1.5 1.5h-13a1.5 1.5 0 0 1-1.5-1.5ZM8 4v4.5h7V4'
    return {
        'open': [('i', 'M3.5 18.5v-12a1.5 1.5 0 0 1 1.5-1.5h4.2l2 2.5h6.3a1.5 1.5 0 0 1 1.5 1.5v1.5'),
                 ('a', 'M3.8 18.8l2.6-7.4a1.4 1.4 0 0 1 1.3-.9h12.6l-2.8 7.6a1.4 1.4 0 0 1-1.3.9H4.3')],
        'save': [('i', disk), ('a', 'M7.5 20v-6.5h9V20')],
        'save_as': [('i', 'M10 20H5.5a1.5 1.5 0 0 1-1.5-1.5v-13a1.5 1.5 0 0 1 1.5-1.5h11l3.5 3.5v2M8 4v4.5h7V4'),
                    ('a', 'M12.5 20.5l.6-2.6l6-6l2 2l-6 6Z')],
        'undo': [('i', 'M8.5 4.5L4.5 8.5l4 4M4.5 8.5h9.5a5.5 5.5 0 0 1 0 11H8')],
        'redo': [('i', 'M15.5 4.5l4 4l-4 4M19.5 8.5H10a5.5 5.5 0 0 0 0 11h6')],
        'find': [('i', LENS), ('a', 'M7.6 12.6l2.9-5l2.9 5M8.8 11h3.4')],
        'zoom_in': [('i', LENS), ('a', 'M10.5 7.8v5.4M7.8 10.5h5.4')],
        'zoom_out': [('i', LENS), ('a', 'M7.8 10.5h5.4')],
        'actual_size': [('i', rect(4.5, 3.5, 15, 17, 1)), ('a', 'M7.8 9.5l1.6-1.3v7.6M14.6 9.5l1.6-1.3v7.6M12.3 10v.2M12.3 14v.2')],
        'fit_width': [('i', rect(5, 3.5, 14, 17, 1)), ('a', 'M8 12h8M10 9.8L7.8 12l2.2 2.2M14 9.8l2.2 2.2l-2.2 2.2')],
        'bookmark_add': [('i', 'M12.5 3.75H7a1 1 0 0 0-1 1V20.5l6-4.2l6 4.2V11.5'), ('a', 'M17.5 3v6M14.5 6h6')],
        'fit_page': [('i', rect(5, 3.5, 14, 17, 1)), ('a', 'M8.5 9.5v-2.5h2.5M15.5 14.5v2.5h-2.5M13 7h2.5v2.5M11 17H8.5v-2.5')],
        'hand': [('i', 'M8 13V6.2a1.4 1.4 0 0 1 2.8 0V11V4.7a1.4 1.4 0 0 1 2.8 0V11V6a1.4 1.4 0 0 1 2.8 0v5.5V8.5a1.3 1.3 0 0 1 2.6 0v6'
                       'a6.5 6.5 0 0 1-6.5 6.2c-3 0-4.5-1.5-5.7-3.7l-2.3-4a1.3 1.3 0 0 1 2.2-1.4L8 13.5')],
        'text_select': [('s', rect(3.5, 8, 11, 8)), ('i', 'M18 4.5v15M16 4.5h4M16 19.5h4'), ('a', 'M5 14.5l3.5-7l3.5 7M6.3 12h4.4')],
        'first_page': [('i', 'M6 5.5v13M17.5 5.5L11 12l6.5 6.5')],
        'prev_page': [('i', 'M15 5.5L8.5 12l6.5 6.5')],
        'next_page': [('i', 'M9 5.5l6.5 6.5L9 18.5')],
        'last_page': [('i', 'M18 5.5v13M6.5 5.5L13 12l-6.5 6.5')],
        'print': [('i', 'M7 9.5V4h10v5.5M7 17H5a1.5 1.5 0 0 1-1.5-1.5V11a1.5 1.5 0 0 1 1.5-1.5h14a1.5 1.5 0 0 1 1.5 1.5v4.5a1.5 1.5 0 0 1-1.5 1.5h-2'),
                  ('a', 'M7 14h10v6.5H7ZM17.3 12.2v.1')],
        'back': [('i', 'M20 12H4.5M11 5.5L4.5 12l6.5 6.5')],
        'forward': [('i', 'M4 12h15.5M13 5.5l6.5 6.5l-6.5 6.5')],
        'close': [('i', CROSS)],
        'more': [('I', circle(5.5, 12, 1.6) + circle(12, 12, 1.6) + circle(18.5, 12, 1.6))],
    }


def application_icon():
    return svg('<path fill="#2F6FDE" d="M14 4h36a10 10 0 0 1 10 10v36a10 10 0 0 1-10 10H14A10 10 0 0 1 4 50V14A10 10 0 0 1 14 4Z"/>\n'
               '<path fill="#FFFFFF" d="M19 12h18l11 11v27a3 3 0 0 1-3 3H19a3 3 0 0 1-3-3V15a3 3 0 0 1 3-3Z"/>\n'
               '<path fill="#BFD3F7" d="M37 12l11 11h-8a3 3 0 0 1-3-3Z"/>\n'
               '<path fill="none" stroke="#9DB0CF" stroke-width="2.5" stroke-linecap="round" d="M22 24h9M22 32h9M22 40h9"/>\n'
               '<path fill="#F2A33A" d="M35 30h9v18l-4.5-4l-4.5 4Z"/>', 64, 64)


# The spinner: twelve dots whose brightness travels round. GIF knows no partial transparency, so the colours are blends
# of the accent with the light ground of the label that shows it.
def spinner_gif(size, steps):
    ramp = [tuple(round(g + (c - g) * (k / (steps - 1)) ** 1.6) for c, g in zip((0x2F, 0x6F, 0xDE), (0xE6, 0xEC, 0xF7)))
            for k in range(steps)]
    palette = ramp + [(255, 255, 255)] * (16 - steps)
    clear = 15
    out = bytearray(b'GIF89a' + struct.pack('<HHBBB', size, size, 0xF3, clear, 0))
    for colour in palette:
        out += bytes(colour)
    out += b'\x21\xFF\x0BNETSCAPE2.0\x03\x01\x00\x00\x00'
    for frame in range(steps):
        pixels = bytearray([clear]) * (size * size)
        for dot in range(steps):
            stamp_dot(pixels, size, dot, steps, (dot - frame - 1) % steps)
        out += b'\x21\xF9\x04' + struct.pack('<BHBB', 0x09, 8, clear, 0)
        out += b'\x2C' + struct.pack('<HHHHB', 0, 0, size, size, 0) + lzw(bytes(pixels), 4)
    return bytes(out + b'\x3B')


def stamp_dot(pixels, size, dot, steps, shade):
    angle = 2 * math.pi * dot / steps - math.pi / 2
    cx, cy = size / 2 + size * 0.36 * math.cos(angle), size / 2 + size * 0.36 * math.sin(angle)
    radius = size * 0.065
    for y in range(size):
        for x in range(size):
            if (x + 0.5 - cx) ** 2 + (y + 0.5 - cy) ** 2 <= radius * radius:
                pixels[y * size + x] = shade


def lzw(data, bits):
    """The image data of one frame: code size, then sub-blocks of at most 255 bytes."""
    clear, end = 1 << bits, (1 << bits) + 1
    table, width, buffer, filled, codes = {}, bits + 1, 0, 0, bytearray()

    def emit(code):
        nonlocal buffer, filled
        buffer |= code << filled
        filled += width
        while filled >= 8:
            codes.append(buffer & 255)
            buffer >>= 8
            filled -= 8

    def reset():
        nonlocal table, width
        table, width = {bytes([k]): k for k in range(clear)}, bits + 1

    reset()
    emit(clear)
    prefix, following = b'', end + 1
    for value in data:
        longer = prefix + bytes([value])
        if longer in table:
            prefix = longer
            continue
        emit(table[prefix])
        table[longer] = following
        if following == 1 << width:
            width += 1
        following += 1
        if following > 4095:
            emit(clear)
            reset()
            following = end + 1
        prefix = bytes([value])
    emit(table[prefix])
    emit(end)
    if filled:
        codes.append(buffer & 255)
    blocks = b''.join(bytes([len(codes[k:k + 255])]) + bytes(codes[k:k + 255]) for k in range(0, len(codes), 255))
    return bytes([bits]) + blocks + b'\x00'


def collect(folder):
    names = []
    for base, _, files in os.walk(os.path.join(ROOT, folder)):
        names += [os.path.relpath(os.path.join(base, f), ROOT) for f in files]
    return sorted(names)


def write_qrc():
    addon = [f'    <file>{n}</file>' for folder in ('nodeQrc', 'annotation', 'attachType', 'catalog', 'nocontent') for n in collect(folder)]
    write('navigation.qrc', '<RCC>\n  <qresource prefix="/">\n' + '\n'.join(addon) + '\n  </qresource>\n</RCC>\n')
    # Pages name their icons without an extension; style sheets name the tree's arrows with it.
    navi = [f'    <file alias="{os.path.basename(n).removesuffix(".svg")}">{n}</file>' for n in collect('core')]
    reader = [f'    <file>{n}</file>' for n in collect('reader')]
    write('host.qrc', '<RCC>\n  <qresource prefix="/core/res/icons/navi">\n' + '\n'.join(navi) + '\n  </qresource>\n'
          '  <qresource prefix="/">\n' + '\n'.join(reader) + '\n  </qresource>\n</RCC>\n')


if __name__ == '__main__':
    node_icons()
    annotation_controls()
    annotation_types()
    catalog_icons()
    attachment_types()
    empty_pictures()
    host_icons()
    write_qrc()
