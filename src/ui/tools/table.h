// Table: rows that are asked for only when they are seen, so that any number of them opens at once.
#pragma once

#include <wx/dataview.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

namespace tellaxis::ui {

struct TableColumn {
  const char* title;  ///< UTF-8
  int characters;     ///< its width
};

class Table : public wxDataViewCtrl {
 public:
  using Text = std::function<wxString(std::size_t row, unsigned column)>;
  /// Nothing: as the system shows text.
  using Colour = std::function<std::optional<wxColour>(std::size_t row)>;

  Table(wxWindow* parent, std::span<const TableColumn> columns, Text text, Colour colour);

  /// Everything may have changed; no row is chosen.
  void reload(std::size_t rows);

  std::optional<std::size_t> chosen() const;
  void choose(std::size_t row);

 private:
  wxObjectDataPtr<wxDataViewVirtualListModel> rows_;
};

}  // namespace tellaxis::ui
