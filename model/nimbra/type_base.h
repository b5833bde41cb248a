// SPDX-License-Identifier: BSD-3-Clause
// The record that describes an element type, and the counted type object that publishes it.
#pragma once

#include "model/torvel/references/chunk_base.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <typeinfo>
#include <vector>

namespace Nimbra {

/// Description of an element type.
struct NimbraTypeIndex {
  std::int32_t components = 0;     ///< scalars per element
  std::int32_t elementBytes = 0;   ///< bytes per element
  std::int32_t vectorFlagA = 0;    ///< stored as the element's record has it
  std::int32_t vectorFlagB = 0;    ///< stored as the element's record has it
  std::int32_t componentBytes = 0; ///< bytes per scalar
  std::string typeName;            ///< readable name of the element
  std::string componentName;       ///< readable name of the scalar
  std::string chartName;           ///< readable name of the domain, "void" for a plain scalar
  std::int32_t dimensions = 0;     ///< of the domain, 0 for a plain scalar
};

/// The type object of one element type: its record, and what can be made of it at run time.
class TORVEL_API NimbraTypeBase : public Torvel::ReferenceBase<NimbraTypeBase>, public NimbraTypeIndex {
 public:
  ~NimbraTypeBase() override;

  /// The element type.
  virtual const std::type_info& elementType() const = 0;
  /// Whether `type` is this element type, also when another module has its own copy of the type's identity.
  virtual bool isElementType(const std::type_info& type) const = 0;
  /// A new chunk of `count` elements of this type.
  virtual Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase> create(std::size_t count) const = 0;
  /// The first 32-bit word of a value; of a shorter value, its bytes and zeros behind them.
  virtual std::uint32_t firstWord(const void* value) const = 0;
  /// A strong hold of this type object.
  virtual Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> self() = 0;
  /// Always empty.
  virtual std::string suffix() const = 0;
  /// Type of the element's domain, void for a plain scalar.
  virtual const std::type_info& domainType() const = 0;
  /// Reserved; 0.
  virtual int reservedA() const = 0;
  virtual int reservedB() const = 0;

  /// Publishes the type object in the table of the process; once per object.
  void remember();

  /// The published type objects in order of publication. Objects that are gone aren't listed.
  /// \threads safe
  static std::vector<Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>> rememberedTypes();

 protected:
  explicit NimbraTypeBase(const NimbraTypeIndex& index);
};

} // namespace Nimbra
