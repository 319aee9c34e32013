// The C string list, map and multimap of include/internal/cef_string_*.h.

#include <string>
#include <utility>
#include <vector>

#include "include/internal/cef_string_list.h"
#include "include/internal/cef_string_map.h"
#include "include/internal/cef_string_multimap.h"

namespace {

using Text = std::u16string;
using Pairs = std::vector<std::pair<Text, Text>>;

Text ToText(const cef_string_t* s) {
  return (s && s->str) ? Text(s->str, s->length) : Text();
}

int CopyOut(const Text& text, cef_string_t* out) {
  if (!out) {
    return 0;
  }
  return cef_string_utf16_set(text.data(), text.size(), out, 1);
}

}  // namespace

struct _cef_string_list_t {
  std::vector<Text> items;
};

struct _cef_string_map_t {
  Pairs items;
};

struct _cef_string_multimap_t {
  Pairs items;
};

extern "C" {

cef_string_list_t cef_string_list_alloc(void) {
  return new _cef_string_list_t;
}

size_t cef_string_list_size(cef_string_list_t list) {
  return list ? list->items.size() : 0;
}

int cef_string_list_value(cef_string_list_t list,
                          size_t index,
                          cef_string_t* value) {
  if (!list || index >= list->items.size()) {
    return 0;
  }
  return CopyOut(list->items[index], value);
}

void cef_string_list_append(cef_string_list_t list, const cef_string_t* value) {
  if (list) {
    list->items.push_back(ToText(value));
  }
}

void cef_string_list_clear(cef_string_list_t list) {
  if (list) {
    list->items.clear();
  }
}

void cef_string_list_free(cef_string_list_t list) {
  delete list;
}

cef_string_list_t cef_string_list_copy(cef_string_list_t list) {
  return list ? new _cef_string_list_t(*list) : nullptr;
}

cef_string_map_t cef_string_map_alloc(void) {
  return new _cef_string_map_t;
}

size_t cef_string_map_size(cef_string_map_t map) {
  return map ? map->items.size() : 0;
}

int cef_string_map_find(cef_string_map_t map,
                        const cef_string_t* key,
                        cef_string_t* value) {
  if (!map) {
    return 0;
  }
  const Text wanted = ToText(key);
  for (const auto& item : map->items) {
    if (item.first == wanted) {
      return CopyOut(item.second, value);
    }
  }
  return 0;
}

int cef_string_map_key(cef_string_map_t map, size_t index, cef_string_t* key) {
  if (!map || index >= map->items.size()) {
    return 0;
  }
  return CopyOut(map->items[index].first, key);
}

int cef_string_map_value(cef_string_map_t map,
                         size_t index,
                         cef_string_t* value) {
  if (!map || index >= map->items.size()) {
    return 0;
  }
  return CopyOut(map->items[index].second, value);
}

int cef_string_map_append(cef_string_map_t map,
                          const cef_string_t* key,
                          const cef_string_t* value) {
  if (!map) {
    return 0;
  }
  Text k = ToText(key);
  for (const auto& item : map->items) {
    if (item.first == k) {
      return 0;
    }
  }
  map->items.emplace_back(std::move(k), ToText(value));
  return 1;
}

void cef_string_map_clear(cef_string_map_t map) {
  if (map) {
    map->items.clear();
  }
}

void cef_string_map_free(cef_string_map_t map) {
  delete map;
}

cef_string_multimap_t cef_string_multimap_alloc(void) {
  return new _cef_string_multimap_t;
}

size_t cef_string_multimap_size(cef_string_multimap_t map) {
  return map ? map->items.size() : 0;
}

size_t cef_string_multimap_find_count(cef_string_multimap_t map,
                                      const cef_string_t* key) {
  if (!map) {
    return 0;
  }
  const Text wanted = ToText(key);
  size_t count = 0;
  for (const auto& item : map->items) {
    if (item.first == wanted) {
      ++count;
    }
  }
  return count;
}

int cef_string_multimap_enumerate(cef_string_multimap_t map,
                                  const cef_string_t* key,
                                  size_t value_index,
                                  cef_string_t* value) {
  if (!map) {
    return 0;
  }
  const Text wanted = ToText(key);
  for (const auto& item : map->items) {
    if (item.first == wanted && value_index-- == 0) {
      return CopyOut(item.second, value);
    }
  }
  return 0;
}

int cef_string_multimap_key(cef_string_multimap_t map,
                            size_t index,
                            cef_string_t* key) {
  if (!map || index >= map->items.size()) {
    return 0;
  }
  return CopyOut(map->items[index].first, key);
}

int cef_string_multimap_value(cef_string_multimap_t map,
                              size_t index,
                              cef_string_t* value) {
  if (!map || index >= map->items.size()) {
    return 0;
  }
  return CopyOut(map->items[index].second, value);
}

int cef_string_multimap_append(cef_string_multimap_t map,
                               const cef_string_t* key,
                               const cef_string_t* value) {
  if (!map) {
    return 0;
  }
  map->items.emplace_back(ToText(key), ToText(value));
  return 1;
}

void cef_string_multimap_clear(cef_string_multimap_t map) {
  if (map) {
    map->items.clear();
  }
}

void cef_string_multimap_free(cef_string_multimap_t map) {
  delete map;
}

}  // extern "C"
