#!/usr/bin/env python3
"""The bill of materials of a build is SPDX 2.3 and names every library that the program is built from.

Usage: materials.py FILE SOURCE_FOLDER.
"""
import glob
import json
import os
import re
import sys

# What the build files look for, by the package that it comes from.
PACKAGES = {'CLI11': 'libcli11-dev', 'CURL': 'libcurl4-openssl-dev', 'DuckDB': 'duckdb',
            'ICU': 'libicu-dev', 'PostgreSQL': 'libpq-dev', 'fmt': 'libfmt-dev',
            'nlohmann_json': 'nlohmann-json3-dev', 'Boost': 'libboost-dev', 'Gettext': 'gettext', 'Xlsxwriter': 'libxlsxwriter-dev'}
ROOMS = ('backend', 'embedded', 'render', 'cli')


def expect(holds, what):
    if not holds:
        sys.exit('materials.py: ' + what)


def looked_for(source):
    found = {'Boost', 'Xlsxwriter'}  # found without a package of theirs
    for room in ROOMS:
        for path in glob.glob(os.path.join(source, room, '**', 'CMakeLists.txt'), recursive=True):
            with open(path, encoding='utf-8') as file:
                found.update(re.findall(r'find_package\((\w+)', file.read()))
    return found


def main():
    with open(sys.argv[1], encoding='utf-8') as file:
        bill = json.load(file)
    expect(bill['spdxVersion'] == 'SPDX-2.3' and bill['dataLicense'] == 'CC0-1.0', 'not SPDX 2.3')
    expect(bill['creationInfo']['creators'] and bill['documentNamespace'], 'nobody made it')
    packages = {package['name']: package for package in bill['packages']}
    for name, package in packages.items():
        expect(package['versionInfo'] and package['licenseDeclared'], f'{name}: no version or licence')
        expect(re.fullmatch(r'SPDXRef-[A-Za-z0-9.-]+', package['SPDXID']), f'{name}: no identifier')
    wanted = looked_for(sys.argv[2])
    expect(len(wanted) > 5, f'the build looks for {wanted} alone')
    for library in wanted:
        expect(PACKAGES.get(library) in packages, f'{library} is missing')
    related = {relation['relatedSpdxElement'] for relation in bill['relationships']}
    expect(related == {package['SPDXID'] for package in packages.values()}, 'not all are related')
    with open(os.path.join(sys.argv[2], 'package-lock.json'), encoding='utf-8') as file:
        locked = json.load(file)['packages']['node_modules/@duckdb/node-bindings-linux-x64']['version']
    expect(packages['duckdb']['versionInfo'] == locked, f'the engine is not the one of {locked}')


if __name__ == '__main__':
    main()
