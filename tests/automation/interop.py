"""The C# declarations of the automation interface, as importing the type library makes them: interop.py IDL

Takes the IDL with its macros replaced, as the C preprocessor prints it.
"""

import re
import sys

TYPES = {
    "LONG": ("int", ""),
    "BSTR": ("string", "BStr"),
    "VARIANT_BOOL": ("bool", "VariantBool"),
    "CURRENCY": ("decimal", "Currency"),
    "DATE": ("DateTime", ""),
    "VARIANT": ("object", "Struct"),
    "unsigned char": ("byte", ""),
    "IUnknown*": ("object", "IUnknown"),
    "SAFEARRAY(unsigned char)": ("Array", "SafeArray, SafeArraySubType = VarEnum.VT_UI1"),
    "SAFEARRAY(CURRENCY)": ("Array", "SafeArray, SafeArraySubType = VarEnum.VT_CY"),
}


class Parameter:
    """A parameter: "[in, defaultvalue(0)] LONG Count"."""

    def __init__(self, text):
        attributes, declaration = re.fullmatch(r"\[(.*?)\]\s*(.*)", text.strip(), re.S).groups()
        self.type, self.name = re.fullmatch(r"(.*?)\s*\b(\w+)", declaration, re.S).groups()
        self.result = "retval" in attributes
        self.reference = "out" in re.split(r"\W+", attributes)
        self.optional = "optional" in attributes or "defaultvalue" in attributes
        default = re.search(r"defaultvalue\((.*)\)", attributes)
        self.default = default and default.group(1)
        if self.reference:
            self.type = self.type[:-1].strip()


class Interfaces:
    """What the IDL declares, printed as C#."""

    def __init__(self, idl):
        self.enumerations = re.findall(r"typedef \[.*?\]\s*enum (\w+) \{(.*?)\}", idl, re.S)
        self.interfaces = re.findall(
            r"\[object,[^\]]*?uuid\(([-\w]+)\)[^\]]*\]\s*interface (\w+) : IDispatch \{(.*?)\n? *\}", idl, re.S)
        self.classes = re.findall(r"\[uuid\(([-\w]+)\)\]\s*coclass (\w+) \{\s*\[default\] interface (\w+)", idl)
        self.class_of = {interface: name for _, name, interface in self.classes}
        self.enumeration_names = {name for name, _ in self.enumerations}
        if not (self.enumerations and self.interfaces and self.classes):
            sys.exit("that isn't the IDL of the automation interface")

    def type_of(self, idl_type):
        """The type in C#, and how it is marshalled. An interface that a class has as its own stands for that class."""
        idl_type = " ".join(idl_type.split())
        if idl_type in TYPES:
            return TYPES[idl_type]
        if idl_type.endswith("*"):
            name = idl_type[:-1].strip()
            return self.class_of.get(name, name), "Interface"
        if idl_type not in self.enumeration_names:
            sys.exit(f"{idl_type} isn't known")
        return idl_type, ""

    def parameter(self, parameter):
        name, marshalling = self.type_of(parameter.type)
        attributes = [f"MarshalAs(UnmanagedType.{marshalling})"] if marshalling else []
        if parameter.optional:
            attributes.append("Optional")
            if parameter.default and name == "decimal":
                attributes.append("DecimalConstant(0, 0, 0, 0, 0)")
            elif parameter.default and name in ("int", "byte", "string"):
                value = f"(byte){parameter.default}" if name == "byte" else parameter.default
                attributes.append(f"DefaultParameterValue({value})")
            elif parameter.default and name == "bool":
                attributes.append("DefaultParameterValue(false)")
            elif parameter.default and name in self.enumeration_names:
                attributes.append(f"DefaultParameterValue(({name}){parameter.default})")
        text = f"[{', '.join(attributes)}] " if attributes else ""
        return f"{text}{'ref ' if parameter.reference else ''}{name} @{parameter.name}"

    def members(self, body):
        """Methods, and properties whose accessors stand beside each other."""
        lines = []
        accessors = {}
        for attributes, name, parameters in re.findall(r"\[([^\]]*)\]\s*HRESULT (\w+)\((.*?)\);", body, re.S):
            parameters = [Parameter(text) for text in split(parameters)]
            results = [parameter for parameter in parameters if parameter.result]
            parameters = [parameter for parameter in parameters if not parameter.result]
            kind, marshalling = self.type_of(results[0].type) if results else ("void", "")
            head = f"[return: MarshalAs(UnmanagedType.{marshalling})] " if marshalling else ""
            listed = ", ".join(self.parameter(parameter) for parameter in parameters)
            number = f"[DispId({re.search(r'id[(](-?[0-9]+)[)]', attributes).group(1)})]"
            if "propget" in attributes and not parameters:
                accessors[name] = len(lines)
                lines.append(f"{number} {kind} @{name} {{ {head}get; }}")
            elif "propput" in attributes and len(parameters) == 1:
                kind, marshalling = self.type_of(parameters[0].type)
                setter = f"[param: MarshalAs(UnmanagedType.{marshalling})] set; }}" if marshalling else "set; }"
                if name in accessors:
                    lines[accessors[name]] = lines[accessors[name]][:-1] + setter
                else:
                    lines.append(f"{number} {kind} @{name} {{ {setter}")
            else:
                accessor = "get_" if "propget" in attributes else "set_" if "propput" in attributes else ""
                lines.append(f"{number} {head}{kind} @{accessor}{name}({listed});")
        return lines

    def text(self):
        lines = ["using System;", "using System.Runtime.CompilerServices;", "using System.Runtime.InteropServices;",
                 "", "namespace VnZEL10cmn", "{"]
        for name, values in self.enumerations:
            lines += [f"    public enum {name}", "    {", " ".join(values.split()), "    }"]
        for identifier, name, body in self.interfaces:
            lines += [f'    [ComImport, Guid("{identifier}"), InterfaceType(ComInterfaceType.InterfaceIsDual)]',
                      f"    public interface {name}", "    {"]
            lines += [f"        {line}" for line in self.members(body)] + ["    }"]
        identifiers = {name: identifier for identifier, name, _ in self.interfaces}
        for identifier, name, interface in self.classes:
            lines += [f'    [ComImport, Guid("{identifier}")] public class {name}Class {{ }}',
                      f'    [ComImport, Guid("{identifiers[interface]}"), CoClass(typeof({name}Class))]',
                      f"    public interface {name} : {interface} {{ }}"]
        return "\n".join(lines + ["}"])


def split(parameters):
    """The parameters of a list; commas stand in their attributes as well."""
    found, depth, start = [], 0, 0
    for position, character in enumerate(parameters):
        depth += (character in "[(") - (character in "])")
        if character == "," and depth == 0:
            found.append(parameters[start:position])
            start = position + 1
    return found + [parameters[start:]] if parameters.strip() else []


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        print(Interfaces(file.read()).text())


if __name__ == "__main__":
    main()
