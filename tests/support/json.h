// Reads the JSON of the test data: objects, arrays, strings without escapes but \", \\, \n and \r, whole
// numbers, and true, false and null as texts.
#pragma once

#include <cctype>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace tests {

struct Json {
  struct Field;

  std::string text;
  double number = 0;
  std::vector<Json> items;
  std::vector<Field> fields;  // of an object, in the order of the source

  // The field with this name; an empty value when there is none.
  const Json& operator[](std::string_view name) const;

  static Json Parse(const std::string& source);
};

struct Json::Field {
  std::string name;
  Json value;
};

inline const Json& Json::operator[](std::string_view name) const {
  for (const Field& field : fields) {
    if (field.name == name) return field.value;
  }
  static const Json none;
  return none;
}

class JsonReader {
 public:
  explicit JsonReader(const std::string& source) : at(source.c_str()) {}

  Json Value() {
    Json value;
    const char first = Next();
    if (first == '"') {
      value.text = String();
    } else if (first == '{' || first == '[') {
      const char end = first == '{' ? '}' : ']';
      for (++at; Next() != end && *at != '\0';) {
        std::string name = first == '{' ? String() : "";
        if (first == '[') value.items.push_back(Value());
        if (first == '{') value.fields.push_back({name, Value()});
      }
      if (*at != '\0') ++at;
    } else if (first == 't' || first == 'f' || first == 'n') {
      while (std::isalpha(static_cast<unsigned char>(*at)) != 0) value.text += *at++;
    } else {
      char* end = nullptr;
      value.number = std::strtod(at, &end);
      if (end == at) std::abort();  // no JSON of this kind
      at = end;
    }
    return value;
  }

 private:
  char Next() {
    while (std::isspace(static_cast<unsigned char>(*at)) != 0 || *at == ',' || *at == ':') ++at;
    return *at;
  }

  std::string String() {
    std::string text;
    for (++at; *at != '"' && *at != '\0'; ++at) {
      const bool escaped = *at == '\\';
      if (escaped) ++at;
      text += escaped && *at == 'n' ? '\n' : escaped && *at == 'r' ? '\r' : *at;
    }
    if (*at != '\0') ++at;
    return text;
  }

  const char* at;
};

inline Json Json::Parse(const std::string& source) {
  return JsonReader(source).Value();
}

}  // namespace tests
