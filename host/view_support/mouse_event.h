// Kinds of mouse events that the view forwards.

#pragma once

class MouseEvent {
 public:
  enum class Type {
    Press = 1,
    Release = 2,
    Move = 3,
    Enter = 4,
    Leave = 5,
  };
};
