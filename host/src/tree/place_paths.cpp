#include "tree/place_paths.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace ocifip {
namespace {

// What puts a place in schema order: those above it and itself among their siblings.
std::vector<std::pair<std::size_t, std::string_view>> rank_of(const Place* place) {
  std::vector<std::pair<std::size_t, std::string_view>> rank;
  for (; place->parent != nullptr; place = place->parent) {
    rank.emplace(rank.begin(), place->order, place->tag);
  }
  return rank;
}

bool leads_to(const Place* place, const Place* other) {
  do {
    other = other->parent;
  } while (other != nullptr && other != place);
  return other != nullptr;
}

}  // namespace

std::string qualified_path(const Place* place) {
  if (place->parent == nullptr) {
    return {};
  }
  std::string path = qualified_path(place->parent) + '/';
  if (place->module_namespace != place->parent->module_namespace) {
    path.append(place->module.empty() ? place->module_namespace : place->module).append(":");
  }
  return path + place->tag;
}

std::vector<std::string> qualified_paths(const std::set<const Place*>& places) {
  std::vector<const Place*> ends;
  std::copy_if(places.begin(), places.end(), std::back_inserter(ends), [&](const Place* place) {
    return std::none_of(places.begin(), places.end(),
                        [&](const Place* other) { return leads_to(place, other); });
  });
  std::sort(ends.begin(), ends.end(),
            [](const Place* one, const Place* other) { return rank_of(one) < rank_of(other); });
  std::vector<std::string> paths;
  std::transform(ends.begin(), ends.end(), std::back_inserter(paths), qualified_path);
  return paths;
}

}  // namespace ocifip
