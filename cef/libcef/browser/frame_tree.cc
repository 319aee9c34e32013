#include "libcef/browser/frame_tree.h"

#include <utility>

#include "libcef/browser/browser_impl.h"
#include "libcef/browser/frame_impl.h"

namespace cefengine {

FrameTree::FrameTree(BrowserImpl* browser) : browser_(browser) {}

FrameTree::~FrameTree() = default;

CefRefPtr<FrameImpl> FrameTree::Find(const QString& id) const {
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = frames_.find(id);
  return it == frames_.end() ? nullptr : it->second;
}

CefRefPtr<FrameImpl> FrameTree::Main() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return main_frame_;
}

CefRefPtr<FrameImpl> FrameTree::FindByName(const CefString& name) const {
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& [id, frame] : frames_) {
    if (frame->GetName() == name) {
      return frame;
    }
  }
  return nullptr;
}

size_t FrameTree::Count() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return frames_.size();
}

std::vector<CefString> FrameTree::Identifiers() const {
  std::vector<CefString> identifiers;
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& [id, frame] : frames_) {
    identifiers.push_back(id.toStdString());
  }
  return identifiers;
}

std::vector<CefString> FrameTree::Names() const {
  std::vector<CefString> names;
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& [id, frame] : frames_) {
    names.push_back(frame->GetName());
  }
  return names;
}

CefRefPtr<FrameImpl> FrameTree::Add(const QString& id,
                                    const QString& parent_id) {
  CefRefPtr<FrameImpl> replaced;
  std::lock_guard<std::mutex> lock(mutex_);
  if (parent_id.isEmpty() && !closed_ && main_frame_ &&
      main_frame_->id().isEmpty()) {
    // The main frame the client had before the page existed becomes the
    // page's.
    frames_.erase(QString());
    main_frame_->TakeId(id);
    frames_[id] = main_frame_;
    return main_frame_;
  }
  CefRefPtr<FrameImpl> frame = new FrameImpl(browser_, id, parent_id);
  if (closed_) {
    frame->Invalidate();
    return frame;
  }
  frames_[id] = frame;
  if (parent_id.isEmpty()) {
    // A page made anew after its Chromium went has a main frame of its own.
    if (main_frame_ && main_frame_ != frame &&
        frames_.erase(QString::fromStdString(
            main_frame_->GetIdentifier().ToString()))) {
      replaced = main_frame_;
      replaced->Invalidate();
    }
    main_frame_ = frame;
  }
  return frame;
}

void FrameTree::Remove(const QString& id) {
  CefRefPtr<FrameImpl> removed;
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = frames_.find(id);
  if (it == frames_.end() || it->second == main_frame_) {
    return;
  }
  removed = it->second;
  frames_.erase(it);
  removed->Invalidate();
}

void FrameTree::DropSubframes() {
  std::map<QString, CefRefPtr<FrameImpl>> subframes;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    subframes.swap(frames_);
    if (main_frame_) {
      const QString main_id =
          QString::fromStdString(main_frame_->GetIdentifier().ToString());
      frames_[main_id] = main_frame_;
      subframes.erase(main_id);
    }
  }
  for (auto& [id, frame] : subframes) {
    frame->Invalidate();
  }
}

std::map<QString, CefRefPtr<FrameImpl>> FrameTree::TakeAll() {
  std::map<QString, CefRefPtr<FrameImpl>> frames;
  CefRefPtr<FrameImpl> main_frame;
  std::lock_guard<std::mutex> lock(mutex_);
  closed_ = true;
  frames.swap(frames_);
  main_frame.swap(main_frame_);
  return frames;
}

void FrameTree::Close() {
  for (auto& [id, frame] : TakeAll()) {
    frame->Invalidate();
  }
}

void FrameTree::Release() {
  TakeAll();
}

}  // namespace cefengine
