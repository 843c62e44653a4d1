#pragma once

/* Windows that a plug-in describes and the program shows, with its own fields, keyboard, accessibility and
 * colours.
 *
 * A description is a dictionary (see docs/plug-ins/reference/forms.md for every key):
 *   { "name": "example", "title": "Example",
 *     "items": [ { "kind": "number", "name": "port", "label": "&Port:", "minimum": 1, "maximum": 65535 } ],
 *     "buttons": [ { "name": "ok", "title": "OK", "role": "accept" } ] }
 * Each item has a kind, and a name by which it is referred to. A form that is open is a reference of the kind
 * CORVANE_FORM; it stays open until the user closes it, `close` is called, or the plug-in object is
 * destroyed, whether or not the reference is held. Values are read until the last reference is released.
 *
 * References as described in Objects.h. `error` as in Directory.h; the reason names the item and the key that
 * are wrong. Main thread.
 */

#include "Objects.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What happens in a form. Later versions may add events: ignore what you don't know. */
enum CorvaneFormEvent {
    CORVANE_FORM_CHANGED = 1, /* the user has changed a field's value or a list's selection */
    CORVANE_FORM_ENTERED = 2, /* the user has left a text field, or pasted into it */
    CORVANE_FORM_PRESSED = 3, /* a button; of one with the role "accept", the fields are in order */
    CORVANE_FORM_CLOSED = 4   /* always the last event; `item` is "" */
};

/* Who hears of it. Changes that the plug-in makes itself aren't reported. */
typedef struct CorvaneFormListener {
    uint32_t size; /* of this table in bytes, as the plug-in knows it */
    void* self;    /* handed back as the first argument */
    /* `item` is the name of an item or button, borrowed for the length of the call. The form may be closed,
     * others may be opened, and references may be released in it. */
    void (*happened)(void* self, int32_t event, const char* item);
} CorvaneFormListener;

typedef struct CorvaneForms {
    uint32_t size; /* of this table in bytes, as the host knows it; entries beyond it aren't there */

    /* Shows a form in front of what the program shows, and answers a reference to it. `context` is
     * CorvaneHost's. `listener` is copied; it may be null. Null on failure. */
    CorvaneObject* (*open)(void* context, const CorvaneObject* description,
                           const CorvaneFormListener* listener, CorvaneObject** error);
    int8_t (*isOpen)(const CorvaneObject* form);
    /* Brings an open form to the front. */
    void (*raise)(CorvaneObject* form);
    /* Closes it without an event. */
    void (*close)(CorvaneObject* form);
    /* A field's value: a string (text, choice, file), data (password), an integer or null (number), a boolean
     * (check), an array of row numbers (list). Null on failure. */
    CorvaneObject* (*value)(const CorvaneObject* form, const char* item, CorvaneObject** error);
    /* Changes a property of an item or button by the key that descriptions have for it; a null `value` sets
     * the key's default where it has one. With a null `item`, the form's "title". False on failure. */
    int8_t (*set)(CorvaneObject* form, const char* item, const char* key, const CorvaneObject* value,
                  CorvaneObject** error);
    /* Shows what is wrong and gives the keyboard to the item; null for what isn't about one. While a button
     * with the role "accept" is being pressed, the form stays open for it. A null `text` takes the message
     * away; changing the field does so, too. False on failure. */
    int8_t (*complain)(CorvaneObject* form, const char* item, const char* text, CorvaneObject** error);
    /* Offers texts to choose from; the one that the user chooses is typed into the field. False on failure.
     */
    int8_t (*suggest)(CorvaneObject* form, const char* item, const CorvaneObject* texts,
                      CorvaneObject** error);
} CorvaneForms;

#ifdef __cplusplus
}
#endif
