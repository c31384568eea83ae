// Walks the toolkit's widgets by its own functions, and what is drawn by ours through the library's classes.
#include "tests/locale/VisibleTexts.h"

#include <dlfcn.h>

#include <wx/aui/auibook.h>
#include <wx/control.h>
#include <wx/ctrlsub.h>
#include <wx/grid.h>
#include <wx/toplevel.h>

namespace LS::Tests {

namespace {

using Texts = std::set<std::string>;

/// A function of the toolkit, whose headers aren't installed.
template <typename Result, typename... Arguments> Result Gtk(const char* szName, Arguments... arguments)
{
    return reinterpret_cast<Result (*)(Arguments...)>(dlsym(RTLD_DEFAULT, szName))(arguments...);
}

struct List {
    void* data;
    List* next;
    List* previous;
};

bool Is(void* widget, const char* szTypeFunction)
{
    return Gtk<int>("g_type_check_instance_is_a", widget, Gtk<std::size_t>(szTypeFunction)) != 0;
}

void Take(Texts& texts, const char* szText)
{
    if (szText)
        texts.insert(szText);
}

void Walk(void* widget, Texts& texts);

void WalkShown(void* widget, void* texts)
{
    if (Gtk<int>("gtk_widget_get_mapped", widget))
        Walk(widget, *static_cast<Texts*>(texts));
}

/// A menu that isn't open.
void WalkMenu(void* widget, void* texts)
{
    if (Gtk<int>("gtk_widget_get_visible", widget))
        Walk(widget, *static_cast<Texts*>(texts));
    if (Is(widget, "gtk_container_get_type"))
        Gtk<void>("gtk_container_forall", widget, &WalkMenu, texts);
}

void Walk(void* widget, Texts& texts)
{
    char* const szTip = Gtk<char*>("gtk_widget_get_tooltip_text", widget);
    Take(texts, szTip);
    Gtk<void>("g_free", szTip);
    if (Is(widget, "gtk_label_get_type"))
        Take(texts, Gtk<const char*>("gtk_label_get_text", widget));
    if (Is(widget, "gtk_menu_item_get_type"))
        if (void* const menu = Gtk<void*>("gtk_menu_item_get_submenu", widget))
            WalkMenu(menu, &texts);
    if (Is(widget, "gtk_container_get_type"))
        Gtk<void>("gtk_container_forall", widget, &WalkShown, static_cast<void*>(&texts));
}

void Take(Texts& texts, const wxString& text)
{
    texts.insert(text.utf8_string());
}

void WalkDrawn(const wxWindow& window, Texts& texts)
{
    if (!window.IsShown())
        return;
    Take(texts, wxControl::RemoveMnemonics(window.GetLabel()));
    if (const auto* const grid = dynamic_cast<const wxGrid*>(&window))
        for (int i = 0; i < grid->GetNumberCols(); ++i)
            Take(texts, grid->GetColLabelValue(i));
    if (const auto* const book = dynamic_cast<const wxAuiNotebook*>(&window))
        for (std::size_t i = 0; i < book->GetPageCount(); ++i)
            Take(texts, book->GetPageText(i));
    if (const auto* const list = dynamic_cast<const wxItemContainerImmutable*>(&window))
        for (const wxString& entry : list->GetStrings())
            Take(texts, entry);
    for (const wxWindow* const child : window.GetChildren())
        WalkDrawn(*child, texts);
}

} // namespace

std::set<std::string> VisibleTexts()
{
    Texts texts;
    auto* const windows = Gtk<List*>("gtk_window_list_toplevels");
    for (const List* entry = windows; entry; entry = entry->next)
        if (Gtk<int>("gtk_widget_get_mapped", entry->data)) {
            Take(texts, Gtk<const char*>("gtk_window_get_title", entry->data));
            Walk(entry->data, texts);
        }
    Gtk<void>("g_list_free", windows);
    for (const wxWindow* const window : wxTopLevelWindows)
        WalkDrawn(*window, texts);
    return texts;
}

} // namespace LS::Tests
