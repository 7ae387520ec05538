#pragma once

// Base of every collector and item: deleting through it destroys the whole object. Objects are not copied.
class CObject {
  public:
    CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
    virtual ~CObject() = default;
};
