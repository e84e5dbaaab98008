"""Finds what can be changed in a C++ source, and writes the source that holds every change.

A change is switched on by its number while the program runs (mutants.h), so that all of them are
compiled at once. Finding them needs the syntax tree, which python3-clang-19 gives.
"""
import bisect
import re

from clang import cindex

Kind = cindex.CursorKind
BINARY = {'<': 'less', '<=': 'lessEqual', '>': 'greater', '>=': 'greaterEqual', '==': 'equal',
          '!=': 'unequal', '+': 'plus', '-': 'minus', '*': 'times', '/': 'over',
          '+=': 'addTo', '-=': 'takeFrom', '*=': 'multiply', '/=': 'divide',
          '&&': 'both', '||': 'either'}
PARTNER = {'<': '<=', '<=': '<', '>': '>=', '>=': '>', '==': '!=', '!=': '==', '+': '-', '-': '+',
           '*': '/', '/': '*', '+=': '-=', '-=': '+=', '*=': '/=', '/=': '*=', '&&': '||',
           '||': '&&'}
COMPARED = ('==', '!=')  # for every type; the others for numbers only
CONDITIONED = (Kind.IF_STMT, Kind.WHILE_STMT, Kind.CONDITIONAL_OPERATOR)
FUNCTIONS = (Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR)
BODIES = (Kind.COMPOUND_STMT, Kind.IF_STMT, Kind.FOR_STMT, Kind.WHILE_STMT, Kind.CXX_FOR_RANGE_STMT)
DROPPED = (Kind.CALL_EXPR, Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR,
           Kind.UNARY_OPERATOR)
ARITHMETIC = (cindex.TypeKind.DOUBLE, cindex.TypeKind.FLOAT, cindex.TypeKind.INT,
              cindex.TypeKind.UINT, cindex.TypeKind.LONG, cindex.TypeKind.ULONG,
              cindex.TypeKind.LONGLONG, cindex.TypeKind.ULONGLONG)


class Site:
    """One change: where it stands, what it does, and the edits that make it."""

    def __init__(self, line, what, edits):
        self.line, self.what, self.edits = line, what, edits


def blanked(code):
    """The source with comments blanked out, so that an operator is not found in one."""
    return re.sub(r'//[^\n]*', lambda m: ' ' * len(m[0]), code)


class Finder:
    def __init__(self, path, arguments):
        with open(path, 'rb') as file:
            self.code = file.read().decode('latin-1')  # offsets are bytes
        self.bare = blanked(self.code)
        self.path = path
        self.sites = []
        unit = cindex.Index.create().parse(path, args=arguments)
        errors = [d.spelling for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
        if errors:
            raise RuntimeError(f'{path}: {errors[0]}')
        self.starts = [0] + [m.end() for m in re.finditer('\n', self.code)]
        for cursor in unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == path:
                self.declarations(cursor)

    def declarations(self, cursor):
        if cursor.kind in FUNCTIONS or cursor.kind == Kind.FUNCTION_TEMPLATE:
            body = [c for c in cursor.get_children() if c.kind == Kind.COMPOUND_STMT]
            if body and 'constexpr' not in self.text_between(cursor.extent.start, body[0].extent.start):
                self.visit(body[0], cursor, 0)
            return
        for child in cursor.get_children():
            self.declarations(child)

    def text_between(self, start, end):
        return self.code[start.offset:end.offset]

    def visit(self, cursor, parent, depth):
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        text = self.code[start:end]
        if text.startswith(('PRP_ASSERT', 'PRP_DEBUG_ASSERT', 'static_assert', 'case ')):
            if not text.startswith('case '):
                return
        if cursor.kind == Kind.DECL_STMT and re.match(r'(static )?constexpr', text):
            return
        self.mutate(cursor, parent, depth, start, end)
        for child in cursor.get_children():
            if cursor.kind == Kind.CASE_STMT and child.kind.is_expression():
                continue
            self.visit(child, cursor, depth + 1)

    def mutate(self, cursor, parent, depth, start, end):
        children = list(cursor.get_children())
        if cursor.kind in (Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR):
            self.binary(children, depth, start, end)
        elif cursor.kind == Kind.CALL_EXPR and cursor.spelling in ('operator==', 'operator!='):
            if len(children) == 3:
                self.binary([children[0], children[2]], depth, start, end)
        elif cursor.kind == Kind.UNARY_OPERATOR and self.code[start] == '!':
            self.add(start, 'negation dropped', depth, start, end, 'negated', skip=1, cast=True)
        elif cursor.kind in (Kind.INTEGER_LITERAL, Kind.FLOATING_LITERAL):
            if parent.kind != Kind.INIT_LIST_EXPR and re.match(r'[\d.]', self.code[start:]):
                self.add(start, f'{self.code[start:end]} plus one', depth, start, end, 'number')
        elif cursor.kind == Kind.CXX_BOOL_LITERAL_EXPR:
            self.add(start, f'{self.code[start:end]} turned', depth, start, end, 'flag')
        if cursor.kind in CONDITIONED and children[0].kind.is_expression():
            condition = children[0].extent
            a, b = condition.start.offset, condition.end.offset
            self.add(a, 'condition negated', depth, a, b, 'flag', cast=True)
        if cursor.kind in DROPPED and self.is_statement(cursor, parent, end):
            self.drop(depth, start, end)

    def is_statement(self, cursor, parent, end):
        if parent.kind not in BODIES or self.code[end:end + 1] != ';':
            return False
        siblings = list(parent.get_children())
        return parent.kind == Kind.COMPOUND_STMT or (
            cursor != siblings[0] if parent.kind == Kind.IF_STMT else cursor == siblings[-1])

    def binary(self, operands, depth, start, end):
        if len(operands) != 2:
            return
        a, b = operands[0].extent.end.offset, operands[1].extent.start.offset
        operator = self.bare[a:b].strip()
        if operator not in BINARY or not start <= a <= b <= end:
            return
        numbers = all(o.type.get_canonical().kind in ARITHMETIC for o in operands)
        if operator not in COMPARED + ('&&', '||') and not numbers:
            return
        at = a + self.bare[a:b].index(operator)
        lazy = operator in ('&&', '||')
        middle = ', [&]() -> bool { return static_cast<bool>(' if lazy else ', '
        site = self.add(at, f'{operator} to {PARTNER[operator]}', depth, start, end,
                        BINARY[operator], cast=lazy, tail='); })' if lazy else ')',
                        cast_end=at)
        site.edits.append((at, 1, depth, ')' + middle if lazy else middle, len(operator)))

    def add(self, at, what, depth, start, end, name, skip=0, cast=False, tail=')', cast_end=None):
        """Wraps start..end in a call; `skip` bytes at the start are left out."""
        number = len(self.sites)
        head = f'::mutants::{name}(MUTANT_{number}_, ' + ('static_cast<bool>(' if cast else '')
        if cast and cast_end is None:
            tail += ')'
        site = Site(bisect.bisect_right(self.starts, at), what,
                    [(start, 2, depth, head, skip), (end, 0, -depth, tail, 0)])
        self.sites.append(site)
        return site

    def drop(self, depth, start, end):
        number = len(self.sites)
        head = f'(::mutants::on(MUTANT_{number}_) ? static_cast<void>(0) : static_cast<void>('
        self.sites.append(Site(bisect.bisect_right(self.starts, start), 'statement dropped',
                               [(start, 2, depth - 0.5, head, 0), (end, 0, 0.5 - depth, '))', 0)]))

    def rewritten(self, numbers):
        """The source with the sites in `numbers` (site index to mutant number) built in."""
        edits = []
        for index, number in numbers.items():
            edits += [(at, kind, order, text.replace(f'MUTANT_{index}_', str(number)), cut)
                      for at, kind, order, text, cut in self.sites[index].edits]
        edits.sort(key=lambda edit: edit[:3])
        out, last = [], 0
        for at, _, _, text, cut in edits:
            out += [self.code[last:at], text]
            last = at + cut
        return ''.join(out + [self.code[last:]])

    def line(self, number):
        return self.code.split('\n')[number - 1].strip()
