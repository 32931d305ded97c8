#pragma once

namespace Engine {

class Page;

class PageListener {
  public:
    virtual void pageEntered(Page& page) = 0;

  protected:
    constexpr PageListener() = default;
    ~PageListener() = default;
};

}  // namespace Engine
