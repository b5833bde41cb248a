// SPDX-License-Identifier: BSD-3-Clause
// The record of an element type, and the counted type object that publishes it.
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
  std::int32_t vectorFlagA = 0;    ///< stored only; 1 for vectors and colours
  std::int32_t vectorFlagB = 0;    ///< stored only; 1 for vectors
  std::int32_t componentBytes = 0; ///< bytes per scalar
  std::string typeName;            ///< readable name of the element
  std::string componentName;       ///< readable name of the scalar
  std::string chartName;           ///< readable name of the domain, "void" for a plain scalar
  std::int32_t dimensions = 0;     ///< of the domain, 0 for a plain scalar
};

/// The type object of one element type: its record, and operations on the type at run time.
///
/// \threads safe once it is constructed
class TORVEL_API NimbraTypeBase : public Torvel::ReferenceBase<NimbraTypeBase>, public NimbraTypeIndex {
 public:
  ~NimbraTypeBase() override;

  /// \return the element type
  virtual const std::type_info& elementType() const = 0;
  /// \return whether `type` is this element type, also where another shared object has a copy of its type
  /// information
  virtual bool isElementType(const std::type_info& type) const = 0;
  /// Makes a new chunk of `count` elements of this type.
  /// \errors  std::length_error, std::bad_alloc
  virtual Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase> create(std::size_t count) const = 0;
  /// \param value  an element of this type, not null
  /// \return the first 32 bits of the value; a shorter value is filled up with zeros
  virtual std::uint32_t firstWord(const void* value) const = 0;
  /// \return a strong pointer to this type object
  virtual Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> self() = 0;
  /// Reserved; empty.
  virtual std::string suffix() const = 0;
  /// \return the type of the element's domain, void for a plain scalar
  virtual const std::type_info& domainType() const = 0;
  /// Reserved; 0.
  virtual int reservedA() const = 0;
  virtual int reservedB() const = 0;

  /// Publishes the type object in the table of the process, which does not keep it alive. Called once per
  /// object.
  /// \errors  std::bad_alloc
  /// \threads safe
  void remember();

  /// \return the published type objects that are alive, in order of publication
  /// \errors  std::bad_alloc
  /// \threads safe
  static std::vector<Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>> rememberedTypes();

 protected:
  explicit NimbraTypeBase(const NimbraTypeIndex& index);
};

} // namespace Nimbra
