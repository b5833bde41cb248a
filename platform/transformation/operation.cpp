// SPDX-License-Identifier: BSD-3-Clause
// Finds a coordinate operation in PROJ's database and runs it.
#include "platform/transformation/operation.h"

#include "model/torvel/objects/environment.h"
#include "platform/transformation/data_folders.h"

#include <utility>

namespace Proj {

namespace {

// PROJ is C: nothing may be thrown through it.
void collectError(void* collector, int level, const char* message) noexcept {
  if (level != PJ_LOG_ERROR || message == nullptr) {
    return;
  }
  try {
    std::string& text = *static_cast<std::string*>(collector);
    text += text.empty() ? "" : "; ";
    text += message;
  } catch (...) { // NOLINT(bugprone-empty-catch): a shorter reason is still a reason
  }
}

void ignoreLog(void*, int, const char*) {}

std::string folderOfThisLibrary() {
  return folderOfCode(reinterpret_cast<const void*>(&ignoreLog));
}

// PROJ's own search ends with PROJ_LIB where that is set, and a load sets it to a folder that need not hold any data.
std::vector<std::string> searchedFolders(PJ_CONTEXT* context, const std::string& dataPath) {
  std::vector<std::string> folders = dataFolders(dataPath);
  const auto append = [&folders](const std::vector<std::string>& more) {
    folders.insert(folders.end(), more.begin(), more.end());
  };
  append(dataFolders(folderOfThisLibrary()));
  const char* const downloads = proj_context_get_user_writable_directory(context, 0);
  append(dataFolders(downloads == nullptr ? "" : downloads));
  append(dataFolders(Torvel::getEnv("PROJ_DATA")));
  append(installedDataFolders(folderOfCode(reinterpret_cast<const void*>(&proj_context_create))));
  return folders;
}

} // namespace

Operation::Operation(const std::string& from, const std::string& to, const std::string& dataPath)
    : source(from), target(to), data(dataPath) {
  openContext();
  if (context == nullptr) {
    failure = "PROJ cannot make a context";
    return;
  }
  look();
}

Operation::Operation(const Operation* original)
    : source(original->source), target(original->target), data(original->data) {
  openContext();
  if (context != nullptr) {
    steps.reset(proj_clone(context.get(), original->steps.get()));
  }
}

std::unique_ptr<Operation> Operation::clone() const {
  std::unique_ptr<Operation> copy(new Operation(this));
  return copy->steps == nullptr ? nullptr : std::move(copy);
}

bool Operation::serves(const std::string& from, const std::string& to, const std::string& dataPath) const {
  return from == source && to == target && dataPath == data;
}

void Operation::openContext() {
  context.reset(proj_context_create());
  if (context == nullptr) {
    return;
  }
  proj_log_func(context.get(), nullptr, ignoreLog);
  proj_context_set_enable_network(context.get(), 0);
  const std::vector<std::string> folders = searchedFolders(context.get(), data);
  if (!holdDatabase(folders)) {
    return; // PROJ may have been built with one more folder
  }
  std::vector<const char*> names;
  names.reserve(folders.size());
  for (const std::string& folder : folders) {
    names.push_back(folder.c_str());
  }
  proj_context_set_search_paths(context.get(), static_cast<int>(names.size()), names.data());
}

void Operation::look() {
  std::string logged;
  proj_log_level(context.get(), PJ_LOG_ERROR);
  proj_log_func(context.get(), &logged, collectError);
  const std::unique_ptr<PJ, OperationDeleter> found(
      proj_create_crs_to_crs(context.get(), source.c_str(), target.c_str(), nullptr));
  if (found != nullptr) {
    steps.reset(proj_normalize_for_visualization(context.get(), found.get()));
  }
  proj_log_level(context.get(), PJ_LOG_NONE);
  proj_log_func(context.get(), nullptr, ignoreLog);
  if (steps == nullptr) {
    failure = explain(logged);
  }
}

std::string Operation::explain(const std::string& logged) const {
  if (!holdDatabase(searchedFolders(context.get(), data)) &&
      proj_context_get_database_path(context.get()) == nullptr) {
    const std::string named = data.empty() ? "" : data + " (variable PROJ_LIB), ";
    return "finding " + target + " in PROJ's data: expected proj.db in " + named + folderOfThisLibrary() +
           " (beside the library) or PROJ's own folders, found none; install PROJ's data";
  }
  if (!logged.empty()) {
    return logged;
  }
  const int code = proj_context_errno(context.get());
  const char* const text = code == 0 ? nullptr : proj_context_errno_string(context.get(), code);
  return text == nullptr ? "PROJ finds no operation and gives no reason" : text;
}

void Operation::apply(Quillon::PhysicalSpace::point* points, std::size_t count) const {
  constexpr std::size_t stride = sizeof(Quillon::PhysicalSpace::point);
  double* const first = points->begin();
  proj_trans_generic(steps.get(), PJ_FWD, first, stride, count, first + 1, stride, count, first + 2, stride,
                     count, nullptr, 0, 0);
}

} // namespace Proj
