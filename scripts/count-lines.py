#!/usr/bin/python3
"""Counts code lines of the tracked sources: lines that are neither blank nor only a
comment, in C/C++, Octave, Python, shell and CMake files. Tests are everything under
tests/ except the fuzz corpus; product code is everything outside tests/, bench/ and
examples/. Prints both counts, their ratio and, with --files, each file's count.

    scripts/count-lines.py [--files] [REPO]
"""

import os
import re
import subprocess
import sys

C_LIKE = ('.c', '.h', '.cc', '.cpp', '.hpp')


def kind(path, root):
    name = os.path.basename(path)
    ext = os.path.splitext(name)[1]
    if ext in C_LIKE:
        return 'c'
    if ext == '.m':
        return 'octave'
    if ext == '.py':
        return 'python'
    if ext == '.sh' or name == 'CMakeLists.txt' or ext == '.cmake':
        return 'hash'
    if ext == '':
        try:
            with open(os.path.join(root, path), 'rb') as f:
                first = f.readline()
        except OSError:
            return None
        if first.startswith(b'#!') and re.search(rb'\b(ba)?sh\b', first):
            return 'hash'
        if first.startswith(b'#!') and b'python' in first:
            return 'python'
    return None


def c_code_lines(text):
    """Lines holding something outside // and /* */ comments (string literals respected)."""
    count, in_block, has_code = 0, False, False
    i, n = 0, len(text)
    quote = None
    while i < n:
        ch = text[i]
        if ch == '\n':
            count += has_code
            has_code = False
            i += 1
            continue
        if in_block:
            if text.startswith('*/', i):
                in_block = False
                i += 2
            else:
                i += 1
            continue
        if quote:
            has_code = True
            if ch == '\\':
                i += 2
                continue
            if ch == quote:
                quote = None
            i += 1
            continue
        if text.startswith('//', i):
            while i < n and text[i] != '\n':
                i += 1
            continue
        if text.startswith('/*', i):
            in_block = True
            i += 2
            continue
        if ch in '"\'':
            # A digit separator (1'000) is not a character literal.
            if ch == "'" and i > 0 and text[i - 1].isalnum() and i + 1 < n and text[i + 1].isalnum():
                i += 1
                has_code = True
                continue
            quote = ch
        if not ch.isspace():
            has_code = True
        i += 1
    return count + has_code


def line_code_lines(text, comment_re, docstrings=False, block=None):
    count, in_block, in_doc = 0, False, None
    for line in text.splitlines():
        s = line.strip()
        if in_doc:
            if in_doc in s:
                in_doc = None
            continue
        if block and in_block:
            if s == block[1]:
                in_block = False
            continue
        if block and s == block[0]:
            in_block = True
            continue
        if not s or re.match(comment_re, s):
            continue
        if docstrings and s[:3] in ('"""', "'''"):
            q = s[:3]
            if q not in s[3:]:
                in_doc = q
            continue
        count += 1
    return count


def code_lines(path, root):
    k = kind(path, root)
    if k is None:
        return None
    with open(os.path.join(root, path), encoding='utf-8', errors='replace') as f:
        text = f.read()
    if k == 'c':
        return c_code_lines(text)
    if k == 'octave':
        # "%!" lines are test blocks: code, not comments.
        return line_code_lines(text, r'(%(?!!)|#(?!!))', block=('%{', '%}'))
    if k == 'python':
        return line_code_lines(text, r'#', docstrings=True)
    return line_code_lines(text, r'#')


def main():
    args = sys.argv[1:]
    show = '--files' in args
    args = [a for a in args if a != '--files']
    root = args[0] if args else os.path.join(os.path.dirname(os.path.abspath(__file__)), '..')
    files = subprocess.run(['git', '-C', root, 'ls-files'], check=True, capture_output=True,
                           text=True).stdout.split('\n')
    tests = product = 0
    for path in filter(None, files):
        if path.startswith('tests/fuzz/corpus/') or not os.path.isfile(os.path.join(root, path)):
            continue
        n = code_lines(path, root)
        if n is None:
            continue
        if path.startswith('tests/'):
            tests += n
            group = 'test'
        elif path.startswith(('bench/', 'examples/')):
            group = 'other'
        else:
            product += n
            group = 'product'
        if show:
            print(f'{n:6d} {group:8s} {path}')
    print(f'code lines: tests {tests}, product {product}, tests/product {100.0 * tests / product:.1f}%')


if __name__ == '__main__':
    main()
