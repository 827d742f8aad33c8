#!/usr/bin/env python3
"""Writes the manifest for use without registration: the DLL as a side-by-side assembly, with the classes of the IDL,
and its interfaces, whose calls between apartments go through the system's own marshaler by the type library.

Usage: manifest.py IDL VERSION amd64|x86 OUTPUT
"""

import re
import sys

TYPE_LIBRARY_MARSHALER = "{00020424-0000-0000-C000-000000000046}"
IDISPATCH = "{00020400-0000-0000-C000-000000000046}"


def main():
    idl, version, architecture, output = sys.argv[1:]
    with open(idl, encoding="utf-8") as file:
        text = file.read()
    library = re.search(r"uuid\(([-0-9a-f]+)\),\s*version\((\d+\.\d+)\)", text)
    classes = re.findall(r"\[uuid\(([-0-9a-f]+)\)\] coclass (\w+)", text)
    interfaces = re.findall(r"\[object,[^\]]*uuid\(([-0-9a-f]+)\)[^\]]*\]\s*interface (\w+)", text)
    if not library or not classes or not interfaces:
        raise SystemExit(f"{idl}: no library, no classes or no interfaces")
    lines = [
        '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
        '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">',
        f'  <assemblyIdentity type="win32" name="VnZEL10cmn" version="{version}.0"'
        f' processorArchitecture="{architecture}"/>',
        '  <file name="VnZEL10cmn.dll">',
    ]
    for identifier, name in classes:
        lines.append(
            f'    <comClass clsid="{{{identifier.upper()}}}" progid="VnZEL10cmn.{name}" threadingModel="Apartment"'
            f' tlbid="{{{library[1].upper()}}}"/>'
        )
    lines += [
        f'    <typelib tlbid="{{{library[1].upper()}}}" version="{library[2]}" helpdir=""/>',
        "  </file>",
    ]
    for identifier, name in interfaces:
        lines.append(
            f'  <comInterfaceExternalProxyStub name="{name}" iid="{{{identifier.upper()}}}"'
            f' proxyStubClsid32="{TYPE_LIBRARY_MARSHALER}" baseInterface="{IDISPATCH}"'
            f' tlbid="{{{library[1].upper()}}}"/>'
        )
    lines.append("</assembly>")
    with open(output, "w", encoding="utf-8", newline="\r\n") as file:
        file.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
