// SPDX-License-Identifier: BSD-3-Clause
// Loads a database and prints what stands on the grid.
#include <rdb2nimbra/rdb2nimbra.h>

#include "json.h"
#include "model/torvel/core/typename.h"
#include "model/torvel/objects/environment.h"

#include <charconv>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>

namespace {

struct Wish {
  std::string path;
  std::string leverArm;
  int epsg = 0;
  bool all = false;
};

std::optional<Wish> wishOf(int count, char** arguments) {
  Wish wish;
  for (int at = 1; at < count; ++at) {
    const std::string word = arguments[at];
    const bool more = at + 1 < count;
    if (word == "--epsg" && more) {
      const std::string code = arguments[++at];
      if (std::from_chars(code.data(), code.data() + code.size(), wish.epsg).ptr !=
          code.data() + code.size()) {
        return std::nullopt;
      }
    } else if (word == "--lever-arm" && more) {
      wish.leverArm = arguments[++at];
    } else if (word == "--all-attributes") {
      wish.all = true;
    } else if (wish.path.empty() && !word.starts_with("--")) {
      wish.path = word;
    } else {
      return std::nullopt;
    }
  }
  return wish.path.empty() ? std::nullopt : std::optional(wish);
}

/// A trajectory load leaves PROJ_LIB changed; this puts the old value back.
class KeptVariable {
 public:
  KeptVariable() {
    if (const char* value = std::getenv("PROJ_LIB")) {
      value_ = value;
    }
  }
  ~KeptVariable() { value_ ? Torvel::setEnv("PROJ_LIB", *value_, true) : void(::unsetenv("PROJ_LIB")); }

 private:
  std::optional<std::string> value_;
};

std::string load(const Wish& wish, Nimbra::Grid& grid) try {
  if (wish.path.ends_with(".pofx")) {
    const KeptVariable kept;
    return Riegl::pofx2nimbra(wish.path, grid, wish.epsg, {}, wish.leverArm, nullptr);
  }
  return Riegl::rdbx2Z4(wish.path, grid, 0, wish.all, nullptr);
} catch (const std::exception& error) {
  return error.what();
}

json::Layout layoutOf(const std::type_info& element) {
  const auto type = Nimbra::MemBase::registeredType(element);
  if (!type || type->components < 2) {
    const std::string name = Torvel::Typename(element);
    return {name == "unsigned long" ? "unsigned long long" : name,
            name == "unsigned long" ? "unsigned long long" : name, 1};
  }
  const char* kind = type->vectorFlagB != 0 ? "vector" : type->vectorFlagA != 0 ? "rgba" : "point";
  return {kind, type->componentName, type->components};
}

using ChunkPointer = Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>;

template <class T>
bool isChunkOf(const ChunkPointer& chunk) {
  return static_cast<bool>(Torvel::StrongPtr<Torvel::TypedChunk<T>, Torvel::ChunkBase>(chunk));
}

/// Type and values of an attribute.
std::string valuesOf(const ChunkPointer& chunk) {
  using Texts = Torvel::StrongPtr<Torvel::TypedChunk<std::string>, Torvel::ChunkBase>;
  if (const Texts texts = chunk) {
    std::string list;
    for (const std::string& value : texts->values()) {
      list += (list.empty() ? "" : ", ") + json::text(value);
    }
    return R"("type": "string", "values": [)" + list + "]";
  }
  const char* kind = isChunkOf<double>(chunk)               ? "double"
                     : isChunkOf<float>(chunk)              ? "float"
                     : isChunkOf<short>(chunk)              ? "short"
                     : isChunkOf<unsigned short>(chunk)     ? "unsigned short"
                     : isChunkOf<int>(chunk)                ? "int"
                     : isChunkOf<unsigned int>(chunk)       ? "unsigned int"
                     : isChunkOf<unsigned long long>(chunk) ? "unsigned long long"
                     : isChunkOf<unsigned char>(chunk)      ? "unsigned char"
                                                            : "unknown";
  return R"("type": ")" + std::string(kind) + R"(", "values": )" +
         json::list({kind, kind, 1}, chunk->data(), chunk->elementCount());
}

std::string attributesOf(const Torvel::Attributes& attributes) {
  std::string list;
  for (const auto& [name, chunk] : attributes.all()) {
    list += (list.empty() ? "" : ", ") + ("{\"name\": " + json::text(name) + ", " + valuesOf(chunk) + "}");
  }
  return "[" + list + "]";
}

std::string fieldOf(const std::string& name, Nimbra::Field& field) {
  std::string fragments;
  json::Layout layout; // no type without a fragment
  for (const Nimbra::Field::Piece& piece : field.pieces()) {
    layout = layoutOf(piece.array->elementType());
    const std::uint64_t count = piece.array->elementCount();
    fragments += std::string(fragments.empty() ? "" : ",") +
                 "\n        {\"name\": " + json::text(piece.fragment->name()) +
                 ", \"count\": " + std::to_string(count) +
                 ", \"values\": " + json::list(layout, piece.array->rawData(), count) + "}";
  }
  return "{\"name\": " + json::text(name) + ", \"type\": " + json::text(layout.kind) +
         ", \"attributes\": " + attributesOf(field.attributes()) + ", \"fragments\": [" + fragments + "]}";
}

std::string gridOf(Nimbra::Grid& grid) {
  std::string representations;
  for (const auto& representation : grid.representations()) {
    std::string fields;
    for (const auto& place : representation->places()) {
      if (place->field) {
        fields += std::string(fields.empty() ? "" : ",") + "\n      " +
                  fieldOf(place->identity->name(), *place->field);
      }
    }
    representations += std::string(representations.empty() ? "" : ",") +
                       "\n    {\"name\": " + json::text(representation->name()) + ", \"fields\": [" + fields +
                       "]}";
  }
  return "[" + representations + "]";
}

} // namespace

int main(int count, char** arguments) {
  const auto wish = wishOf(count, arguments);
  if (!wish) {
    std::cerr << "foreign_host FILE [--epsg N] [--lever-arm FILE] [--all-attributes]\n";
    return 2;
  }
  const Nimbra::Grid::Pointer grid(new Nimbra::Grid);
  const std::string result = load(*wish, *grid);
  std::cout << "{\"result\": " << json::text(result)
            << ",\n  \"attributes\": " << attributesOf(grid->attributes())
            << ",\n  \"representations\": " << gridOf(*grid) << "}\n";
  return result.empty() ? 0 : 1;
}
