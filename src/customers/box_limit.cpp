#include "customers/box_limit.h"

#include <QLineEdit>
#include <QValidator>
#include <utility>

namespace marlevo {

namespace {

class RoomValidator : public QValidator {
 public:
  RoomValidator(QObject* parent, std::function<bool(std::string_view)> has_room_for)
      : QValidator(parent), has_room_for_(std::move(has_room_for)) {}

  State validate(QString& text, int&) const override {
    return has_room_for_(text.toStdString()) ? Acceptable : Invalid;
  }

 private:
  std::function<bool(std::string_view)> has_room_for_;
};

}  // namespace

void LimitBox(QLineEdit& box, std::optional<std::size_t> most, std::function<bool(std::string_view)> has_room_for) {
  if (most) {
    box.setMaxLength(static_cast<int>(*most));
  }
  box.setValidator(new RoomValidator(&box, std::move(has_room_for)));
}

}  // namespace marlevo
