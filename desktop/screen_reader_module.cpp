#include <atk-bridge.h>
#include <atk/atk.h>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/foundation/localized_strings.hpp"

// The module that velmora-desktop loads when somebody listens: the widget as a tree of accessible
// elements (ATK), one for each phrase, on the accessibility bus.

namespace {

/// An application, its frame, or a phrase in it.
struct Element {
  AtkObject base;
  std::vector<Element*>* children;
  bool isDefunct;
};

struct ElementClass {
  AtkObjectClass base;
};

G_DEFINE_TYPE(Element, element, ATK_TYPE_OBJECT)

Element& asElement(gpointer object) { return *static_cast<Element*>(object); }

gint childCount(AtkObject* object) { return static_cast<gint>(asElement(object).children->size()); }

AtkObject* child(AtkObject* object, gint index) {
  const auto& children = *asElement(object).children;
  if (index < 0 || static_cast<std::size_t>(index) >= children.size()) return nullptr;
  return ATK_OBJECT(g_object_ref(children[static_cast<std::size_t>(index)]));
}

gint indexInParent(AtkObject* object) {
  AtkObject* parent = atk_object_peek_parent(object);
  if (parent == nullptr) return -1;
  const auto& siblings = *asElement(parent).children;
  const auto found = std::find(siblings.begin(), siblings.end(), &asElement(object));
  return found == siblings.end() ? -1 : static_cast<gint>(found - siblings.begin());
}

AtkStateSet* states(AtkObject* object) {
  AtkStateSet* set = ATK_OBJECT_CLASS(element_parent_class)->ref_state_set(object);
  if (asElement(object).isDefunct) {
    atk_state_set_add_state(set, ATK_STATE_DEFUNCT);
    return set;
  }
  for (const auto state :
       {ATK_STATE_ENABLED, ATK_STATE_SENSITIVE, ATK_STATE_VISIBLE, ATK_STATE_SHOWING})
    atk_state_set_add_state(set, state);
  return set;
}

void element_init(Element* element) { element->children = new std::vector<Element*>; }

void finalize(GObject* object) {
  delete asElement(object).children;
  G_OBJECT_CLASS(element_parent_class)->finalize(object);
}

void element_class_init(ElementClass* elementClass) {
  elementClass->base.get_n_children = childCount;
  elementClass->base.ref_child = child;
  elementClass->base.get_index_in_parent = indexInParent;
  elementClass->base.ref_state_set = states;
  G_OBJECT_CLASS(elementClass)->finalize = finalize;
}

Element* makeElement(AtkRole role, const char* name, Element* parent) {
  auto* made = static_cast<Element*>(g_object_new(element_get_type(), nullptr));
  atk_object_set_role(&made->base, role);
  atk_object_set_name(&made->base, name);
  if (parent != nullptr) {
    atk_object_set_parent(&made->base, &parent->base);
    parent->children->push_back(made);
  }
  return made;
}

Element* application() {
  static Element* const made = makeElement(ATK_ROLE_APPLICATION, "velmora-desktop", nullptr);
  return made;
}

Element* frame() {
  static Element* const made = makeElement(ATK_ROLE_FRAME, "Velmora", application());
  return made;
}

void announce(const char* change, std::size_t index, Element* element) {
  g_signal_emit_by_name(frame(), change, static_cast<guint>(index), element);
}

void removeLast() {
  auto& phrases = *frame()->children;
  Element* gone = phrases.back();
  phrases.pop_back();
  announce("children-changed::remove", phrases.size(), gone);
  gone->isDefunct = true;
  atk_object_notify_state_change(&gone->base, ATK_STATE_DEFUNCT, TRUE);
  g_object_unref(gone);
}

}  // namespace

/// Puts the tree on the accessibility bus. Returns whether that could be done.
extern "C" __attribute__((visibility("default"))) bool velmoraStartBridge() {
  auto* toolkit = static_cast<AtkUtilClass*>(g_type_class_ref(ATK_TYPE_UTIL));
  toolkit->get_root = [] { return &application()->base; };
  toolkit->get_toolkit_name = [] { return "velmora"; };
  toolkit->get_toolkit_version = [] { return "1.0"; };
  frame();
  platform::loadStringTables();
  return atk_bridge_adaptor_init(nullptr, nullptr) == 0;
}

/// Makes these the phrases; what is new or different is announced, once.
extern "C" __attribute__((visibility("default"))) void velmoraSay(const char* const* phrases,
                                                                  std::size_t count) {
  const auto& elements = *frame()->children;
  for (std::size_t i = 0; i < count; ++i) {
    if (i == elements.size()) {
      announce("children-changed::add", i, makeElement(ATK_ROLE_LABEL, phrases[i], frame()));
    } else if (std::string_view(atk_object_get_name(&elements[i]->base)) != phrases[i]) {
      atk_object_set_name(&elements[i]->base, phrases[i]);
    }
  }
  while (elements.size() > count) removeLast();
}

/// The same while the amounts are hidden.
extern "C" __attribute__((visibility("default"))) void velmoraSayHidden() {
  const auto phrase = platform::localizedString("AdSense earnings, amounts hidden");
  const char* text = phrase.c_str();
  velmoraSay(&text, 1);
}
