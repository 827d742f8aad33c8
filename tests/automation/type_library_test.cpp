// type_library_test DLL CONTRACT: compares the type library inside the DLL with a list that is written by hand. Ends
// with status 0 if nothing differs.

#include <windows.h>

// After windows.h.
#include <oleauto.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Support.h"

namespace {

using test::Narrow;
using test::Require;

/// A class, interface or enumeration: its lines, each a member.
using Lines = std::vector<std::string>;
using Contract = std::map<std::string, Lines>;

struct Counts {
  int classes = 0;
  int members = 0;
  int parameters = 0;
  int defaults = 0;
  int enumerationValues = 0;
};

std::string NameOf(ITypeInfo* info, MEMBERID member = MEMBERID_NIL) {
  BSTR name = nullptr;
  Require(info->GetDocumentation(member, &name, nullptr, nullptr, nullptr), "GetDocumentation");
  std::string text = Narrow(name);
  SysFreeString(name);
  return text;
}

/// An interface that belongs to a class has that name with "_" in front.
std::string PublishedName(std::string name) {
  if (name.starts_with('_')) name.erase(0, 1);
  return name;
}

std::string TypeName(ITypeInfo* info, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_I4: return "Long";
    case VT_UI1: return "Byte";
    case VT_BOOL: return "Boolean";
    case VT_BSTR: return "String";
    case VT_CY: return "Currency";
    case VT_DATE: return "Date";
    case VT_VARIANT: return "Variant";
    case VT_UNKNOWN: return "IUnknown";
    case VT_SAFEARRAY:
      return type.lptdesc->vt == VT_UI1  ? "Bytes"
             : type.lptdesc->vt == VT_CY ? "Currencies"
                                         : "array of " + TypeName(info, *type.lptdesc);
    case VT_PTR: return TypeName(info, *type.lptdesc) + "*";
    case VT_USERDEFINED: {
      ITypeInfo* referred = nullptr;
      Require(info->GetRefTypeInfo(type.hreftype, &referred), "GetRefTypeInfo");
      std::string name = PublishedName(NameOf(referred));
      referred->Release();
      return name;
    }
    default: return "type " + std::to_string(type.vt);
  }
}

bool IsObject(ITypeInfo* info, const TYPEDESC& type) {
  if (type.vt != VT_PTR || type.lptdesc->vt != VT_USERDEFINED) return false;
  ITypeInfo* referred = nullptr;
  Require(info->GetRefTypeInfo(type.lptdesc->hreftype, &referred), "GetRefTypeInfo");
  TYPEATTR* attributes = nullptr;
  Require(referred->GetTypeAttr(&attributes), "GetTypeAttr");
  const bool is = attributes->typekind == TKIND_DISPATCH || attributes->typekind == TKIND_INTERFACE;
  referred->ReleaseTypeAttr(attributes);
  referred->Release();
  return is;
}

/// The type without the pointer that an object or a value by reference has.
std::string ValueType(ITypeInfo* info, const TYPEDESC& type, bool byReference) {
  const TYPEDESC* value = byReference ? type.lptdesc : &type;
  return TypeName(info, IsObject(info, *value) ? *value->lptdesc : *value);
}

std::string DateText(double date) {
  SYSTEMTIME time{};
  VariantTimeToSystemTime(date, &time);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", time.wYear, time.wMonth, time.wDay,
                time.wHour, time.wMinute, time.wSecond);
  return text;
}

std::string DefaultText(const VARIANT& value) {
  switch (value.vt) {
    case VT_I4: return std::to_string(value.lVal);
    case VT_INT: return std::to_string(value.intVal);
    case VT_I2: return std::to_string(value.iVal);
    case VT_UI1: return std::to_string(value.bVal);
    case VT_BOOL: return value.boolVal != VARIANT_FALSE ? "True" : "False";
    case VT_BSTR: return "\"" + Narrow(value.bstrVal) + "\"";
    case VT_CY: return value.cyVal.int64 % 10000 == 0 ? std::to_string(value.cyVal.int64 / 10000) : "odd";
    case VT_DATE: return DateText(value.date);
    default: return "type " + std::to_string(value.vt);
  }
}

/// One member in the list's notation, from the description of the interface's virtual functions.
std::string MemberLine(ITypeInfo* info, const FUNCDESC& function, Counts& counts) {
  ++counts.members;
  BSTR names[32] = {};
  UINT nameCount = 0;
  Require(info->GetNames(function.memid, names, 32, &nameCount), "GetNames");
  const std::string name = Narrow(names[0]);
  const bool isWrite = function.invkind == INVOKE_PROPERTYPUT || function.invkind == INVOKE_PROPERTYPUTREF;
  std::string parameters;
  std::string result;
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& element = function.lprgelemdescParam[i];
    const USHORT flags = element.paramdesc.wParamFlags;
    if ((flags & PARAMFLAG_FRETVAL) != 0) {
      result = ValueType(info, element.tdesc, true);
      continue;
    }
    // What is written has no name in the list.
    if (isWrite && i == function.cParams - 1) {
      result = ValueType(info, element.tdesc, false);
      continue;
    }
    ++counts.parameters;
    const bool byReference = (flags & PARAMFLAG_FOUT) != 0;
    if (byReference && (flags & PARAMFLAG_FIN) == 0) parameters += "[out only]";
    const std::string parameterName = static_cast<UINT>(i + 1) < nameCount ? Narrow(names[i + 1]) : "?";
    if (!parameters.empty()) parameters += ", ";
    if (byReference) parameters += "ref ";
    const bool hasDefault = (flags & PARAMFLAG_FHASDEFAULT) != 0;
    if ((flags & PARAMFLAG_FOPT) != 0 && !hasDefault) parameters += "optional ";
    parameters += parameterName + ": " + ValueType(info, element.tdesc, byReference);
    if (hasDefault) {
      ++counts.defaults;
      parameters += " = " + DefaultText(element.paramdesc.pparamdescex->varDefaultValue);
    }
  }
  for (BSTR text : names) {
    SysFreeString(text);
  }
  if (function.elemdescFunc.tdesc.vt != VT_HRESULT) parameters += " [returns no HRESULT]";
  const std::string brackets = parameters.empty() ? "" : "(" + parameters + ")";
  const std::string type = result.empty() ? "" : ": " + result;
  if (function.memid == DISPID_NEWENUM) {
    const bool isRight = function.invkind == INVOKE_PROPERTYGET && result == "IUnknown";
    return "enumerator " + name + (isRight ? "" : " [" + type + "]");
  }
  switch (function.invkind) {
    case INVOKE_PROPERTYGET: return "get " + name + brackets + type;
    case INVOKE_PROPERTYPUT: return "put " + name + brackets + type;
    case INVOKE_PROPERTYPUTREF: return "putref " + name + brackets + type;
    default: return "method " + name + "(" + parameters + ")" + type;
  }
}

Lines InterfaceLines(ITypeInfo* dispatch, Counts& counts) {
  HREFTYPE reference = 0;
  ITypeInfo* info = nullptr;
  Require(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), "is the interface dual?");
  Require(dispatch->GetRefTypeInfo(reference, &info), "GetRefTypeInfo");
  TYPEATTR* attributes = nullptr;
  Require(info->GetTypeAttr(&attributes), "GetTypeAttr");
  Lines lines;
  if ((attributes->wTypeFlags & TYPEFLAG_FOLEAUTOMATION) == 0) lines.push_back("[not oleautomation]");
  if ((attributes->wTypeFlags & TYPEFLAG_FDUAL) == 0) lines.push_back("[not dual]");
  std::set<std::pair<MEMBERID, int>> ids;
  for (WORD i = 0; i < attributes->cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    Require(info->GetFuncDesc(i, &function), "GetFuncDesc");
    lines.push_back(MemberLine(info, *function, counts));
    if (!ids.emplace(function->memid, function->invkind).second) lines.back() += " [identifier twice]";
    info->ReleaseFuncDesc(function);
  }
  info->ReleaseTypeAttr(attributes);
  info->Release();
  return lines;
}

Lines EnumerationLines(ITypeInfo* info, const TYPEATTR& attributes, Counts& counts) {
  Lines lines;
  for (WORD i = 0; i < attributes.cVars; ++i) {
    VARDESC* variable = nullptr;
    Require(info->GetVarDesc(i, &variable), "GetVarDesc");
    lines.push_back(NameOf(info, variable->memid) + " = " + DefaultText(*variable->lpvarValue));
    info->ReleaseVarDesc(variable);
    ++counts.enumerationValues;
  }
  return lines;
}

Contract ReadTypeLibrary(const std::wstring& path, Counts& counts) {
  ITypeLib* library = nullptr;
  Require(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library), "LoadTypeLibEx");
  Contract contract;
  std::map<std::string, Lines> interfaces;
  std::set<std::string> classNames;
  BSTR name = nullptr;
  BSTR help = nullptr;
  Require(library->GetDocumentation(-1, &name, &help, nullptr, nullptr), "GetDocumentation");
  contract["library " + Narrow(name) + " \"" + Narrow(help) + "\""] = {};
  SysFreeString(name);
  SysFreeString(help);
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ITypeInfo* info = nullptr;
    TYPEATTR* attributes = nullptr;
    Require(library->GetTypeInfo(i, &info), "GetTypeInfo");
    Require(info->GetTypeAttr(&attributes), "GetTypeAttr");
    const std::string typeName = NameOf(info);
    if (attributes->typekind == TKIND_DISPATCH) {
      interfaces[typeName] = InterfaceLines(info, counts);
    } else if (attributes->typekind == TKIND_ENUM) {
      contract["enum " + typeName] = EnumerationLines(info, *attributes, counts);
    } else if (attributes->typekind == TKIND_COCLASS) {
      ++counts.classes;
      Lines& lines = contract["class " + typeName];
      if ((attributes->wTypeFlags & TYPEFLAG_FCANCREATE) == 0) lines.push_back("[not creatable]");
      for (WORD j = 0; j < attributes->cImplTypes; ++j) {
        HREFTYPE reference = 0;
        ITypeInfo* implemented = nullptr;
        INT flags = 0;
        Require(info->GetRefTypeOfImplType(j, &reference), "GetRefTypeOfImplType");
        Require(info->GetRefTypeInfo(reference, &implemented), "GetRefTypeInfo");
        Require(info->GetImplTypeFlags(j, &flags), "GetImplTypeFlags");
        const std::string interfaceName = NameOf(implemented);
        implemented->Release();
        if (interfaceName == "_" + typeName && (flags & IMPLTYPEFLAG_FDEFAULT) != 0) {
          classNames.insert(interfaceName);
        } else {
          lines.push_back("implements " + interfaceName);
        }
      }
    } else {
      contract["other " + typeName] = {};
    }
    info->ReleaseTypeAttr(attributes);
    info->Release();
  }
  library->Release();
  for (const auto& [interfaceName, lines] : interfaces) {
    if (classNames.contains(interfaceName)) {
      Lines& whole = contract["class " + PublishedName(interfaceName)];
      whole.insert(whole.begin(), lines.begin(), lines.end());
    } else {
      contract["interface " + interfaceName] = lines;
    }
  }
  return contract;
}

Contract ReadContract(const char* path) {
  std::ifstream file(path, std::ios::binary);
  Contract contract;
  Lines* lines = nullptr;
  for (std::string line; std::getline(file, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (line.empty() || line[0] == '#') continue;
    if (!line.starts_with("  ")) {
      lines = &contract[line];
      continue;
    }
    line.erase(0, 2);
    const auto expand = [&](const std::string& word, const std::string& second) {
      if (!line.starts_with(word + " ")) return false;
      const std::string rest = line.substr(word.size());
      lines->push_back("get" + rest);
      lines->push_back(second + rest);
      return true;
    };
    if (!expand("property", "put") && !expand("object", "putref")) lines->push_back(line);
  }
  return contract;
}

int Compare(const Contract& expected, const Contract& found) {
  int differences = 0;
  const auto report = [&differences](const std::string& text) {
    ++differences;
    std::printf("%s\n", text.c_str());
  };
  for (const auto& [name, lines] : expected) {
    const auto other = found.find(name);
    if (other == found.end()) {
      report("missing: " + name);
      continue;
    }
    for (std::size_t i = 0; i < std::max(lines.size(), other->second.size()); ++i) {
      const std::string wanted = i < lines.size() ? lines[i] : "nothing";
      const std::string there = i < other->second.size() ? other->second[i] : "nothing";
      if (wanted != there) report(name + ": expected " + wanted + "\n  found " + there);
    }
  }
  for (const auto& [name, lines] : found) {
    if (!expected.contains(name)) report("not in the contract: " + name);
  }
  return differences;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  try {
    Counts counts;
    const Contract found = ReadTypeLibrary(test::Widen(argv[1]), counts);
    const int differences = Compare(ReadContract(argv[2]), found);
    std::printf(
        "%d classes, %d members, %d parameters, %d defaults, %d enumeration values compared, "
        "%d differences\n",
        counts.classes, counts.members, counts.parameters, counts.defaults, counts.enumerationValues,
        differences);
    return differences == 0 ? 0 : 1;
  } catch (const std::exception& failure) {
    std::printf("%s\n", failure.what());
    return 1;
  }
}
