#include "app-assist/WPageSlideViewController.h"

#include <app.h>

#include <cstdlib>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "app-assist/WLog.h"
#include "app-assist/WTimer.h"
#include "framework_theme.h"

namespace app_assist {

namespace {

constexpr const char *PAGE_GROUP = "page";
constexpr const char *SIZER_PART = "sizer";
constexpr const char *CONTENT_PART = "sw";
constexpr const char *SCROLLER_PART = "scroller";

/// One page without its content.
Evas_Object *addPageBase(Evas_Object *box) {
    Evas_Object *base = elm_layout_add(box);
    evas_object_size_hint_weight_set(base, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    char *resourcePath = app_get_resource_path();
    if (resourcePath == nullptr) {
        WERROR("Failed to get resource path=nullptr!!!");
        return base;
    }
    const std::string theme = std::string(resourcePath) + FRAMEWORK_THEME;
    std::free(resourcePath);
    if (!elm_layout_file_set(base, theme.c_str(), PAGE_GROUP)) {
        WERROR("Fail to set layout. Check EDJ file(%s)", theme.c_str());
    }
    Evas_Object *sizer = evas_object_rectangle_add(evas_object_evas_get(base));
    evas_object_color_set(sizer, 0, 0, 0, 0);
    evas_object_size_hint_weight_set(sizer, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_show(sizer);
    elm_object_part_content_set(base, SIZER_PART, sizer);
    if (elm_object_part_content_get(base, SIZER_PART) != sizer) {
        evas_object_del(sizer);
    }
    evas_object_show(base);
    return base;
}

}  // namespace

struct _WPage {
    WViewController *_view;
    Evas_Object *_pageBase;
    bool _isContentView;

    WViewController *liveView() const;
};

/// A view may have gone without the page, but not without leaving the part.
WViewController *_WPage::liveView() const {
    if (_view == nullptr) {
        return nullptr;
    }
    Evas_Object *content = elm_object_part_content_get(_pageBase, CONTENT_PART);
    return content != nullptr && wview_get_instance(content) == _view ? _view : nullptr;
}

struct _WPageSlideViewControllerImpl {
    WPageSlideViewController *_owner;
    Evas_Object *_scroller;
    Evas_Object *_box;
    int _currentPage;
    int _previousPage;
    int _pageWidth;
    int _pageHeight;
    std::list<_WPage> *_pages;
    bool _scrollbarVisible;
    std::function<void(Evas_Object *)> _initScrollerHandler;
    std::function<void(int)> _pageChangedHandler;

    explicit _WPageSlideViewControllerImpl(WPageSlideViewController *owner);
    ~_WPageSlideViewControllerImpl();

    void hook(Evas_Object *resized, Evas_Object *scroller);
    // `pv` may have gone.
    static void unhook(Evas_Object *resized, Evas_Object *scroller, const void *pv);
    void setUpScroller(Evas_Object *scroller);
    void addBox(Evas_Object *scroller);
    void resizePages(Evas_Object *obj);

    bool attachPage(WViewController *vc, bool isContentView);
    bool fillPage(int index, WViewController *vc, bool isContentView);
    int pageCount() const { return static_cast<int>(_pages->size()); }
    _WPage *pageAt(int index);
    _WPage *pageInRange(int index);
    std::vector<WViewWeakPtr> contentViews() const;

    static void _resizedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);
    static void _scrollCb(void *data, Evas_Object *obj, void *eventInfo);
    static void _scrollStartCb(void *data, Evas_Object *obj, void *eventInfo);
    static void _scrollStopCb(void *data, Evas_Object *obj, void *eventInfo);
    static void _scrollerDeletedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);
};

_WPageSlideViewControllerImpl::_WPageSlideViewControllerImpl(WPageSlideViewController *owner)
    : _owner(owner),
      _scroller(nullptr),
      _box(nullptr),
      _currentPage(0),
      _previousPage(0),
      _pageWidth(0),
      _pageHeight(0),
      _pages(new std::list<_WPage>),
      _scrollbarVisible(true) {}

_WPageSlideViewControllerImpl::~_WPageSlideViewControllerImpl() {
    delete _pages;
}

// ---- size and scrolling

void _WPageSlideViewControllerImpl::hook(Evas_Object *resized, Evas_Object *scroller) {
    evas_object_event_callback_add(resized, EVAS_CALLBACK_RESIZE, _resizedCb, this);
    evas_object_event_callback_add(scroller, EVAS_CALLBACK_DEL, _scrollerDeletedCb, this);
    evas_object_smart_callback_add(scroller, "scroll", _scrollCb, this);
    evas_object_smart_callback_add(scroller, "scroll,anim,start", _scrollStartCb, this);
    evas_object_smart_callback_add(scroller, "scroll,anim,stop", _scrollStopCb, this);
}

void _WPageSlideViewControllerImpl::unhook(Evas_Object *resized, Evas_Object *scroller,
                                           const void *pv) {
    if (resized != nullptr) {
        evas_object_event_callback_del_full(resized, EVAS_CALLBACK_RESIZE, _resizedCb, pv);
    }
    if (scroller != nullptr) {
        evas_object_event_callback_del_full(scroller, EVAS_CALLBACK_DEL, _scrollerDeletedCb, pv);
        evas_object_smart_callback_del_full(scroller, "scroll", _scrollCb, pv);
        evas_object_smart_callback_del_full(scroller, "scroll,anim,start", _scrollStartCb, pv);
        evas_object_smart_callback_del_full(scroller, "scroll,anim,stop", _scrollStopCb, pv);
    }
}

void _WPageSlideViewControllerImpl::setUpScroller(Evas_Object *scroller) {
    elm_scroller_loop_set(scroller, EINA_FALSE, EINA_FALSE);
    evas_object_size_hint_weight_set(scroller, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(scroller, EVAS_HINT_FILL, EVAS_HINT_FILL);
    elm_scroller_page_relative_set(scroller, 1.0, 0.0);
    elm_scroller_policy_set(scroller,
                            _scrollbarVisible ? ELM_SCROLLER_POLICY_AUTO : ELM_SCROLLER_POLICY_OFF,
                            ELM_SCROLLER_POLICY_OFF);
    elm_scroller_page_scroll_limit_set(scroller, 1, 0);
    elm_object_scroll_lock_y_set(scroller, EINA_TRUE);
    elm_scroller_single_direction_set(scroller, ELM_SCROLLER_SINGLE_DIRECTION_HARD);
}

void _WPageSlideViewControllerImpl::addBox(Evas_Object *scroller) {
    _box = elm_box_add(scroller);
    _scroller = scroller;
    elm_box_horizontal_set(_box, EINA_TRUE);
    elm_object_content_set(scroller, _box);
    evas_object_show(_box);
    evas_object_show(scroller);
}

void _WPageSlideViewControllerImpl::resizePages(Evas_Object *obj) {
    if (_scroller == nullptr) {
        return;
    }
    evas_object_geometry_get(obj, nullptr, nullptr, &_pageWidth, &_pageHeight);
    for (const _WPage &page : *_pages) {
        Evas_Object *sizer = elm_object_part_content_get(page._pageBase, SIZER_PART);
        evas_object_size_hint_min_set(sizer, _pageWidth, _pageHeight);
    }
    elm_scroller_page_size_set(_scroller, _pageWidth, _pageHeight);
    elm_scroller_page_show(_scroller, _currentPage, 0);
}

void _WPageSlideViewControllerImpl::_resizedCb(void *data, Evas *, Evas_Object *obj, void *) {
    static_cast<_WPageSlideViewControllerImpl *>(data)->resizePages(obj);
}

void _WPageSlideViewControllerImpl::_scrollCb(void *data, Evas_Object *obj, void *) {
    auto *pv = static_cast<_WPageSlideViewControllerImpl *>(data);
    int x = 0;
    evas_object_geometry_get(pv->_box, &x, nullptr, nullptr, nullptr);
    if (pv->_pageWidth != 0 && x % pv->_pageWidth == 0) {
        elm_scroller_current_page_get(obj, &pv->_currentPage, nullptr);
    }
}

void _WPageSlideViewControllerImpl::_scrollStartCb(void *data, Evas_Object *, void *) {
    auto *pv = static_cast<_WPageSlideViewControllerImpl *>(data);
    pv->_previousPage = pv->_currentPage;
}

void _WPageSlideViewControllerImpl::_scrollStopCb(void *data, Evas_Object *, void *) {
    auto *pv = static_cast<_WPageSlideViewControllerImpl *>(data);
    // A copy, because the handler may destroy the view and the stored one with it.
    const std::function<void(int)> changed = pv->_pageChangedHandler;
    if (changed) {
        changed(pv->_currentPage - pv->_previousPage);
    }
}

void _WPageSlideViewControllerImpl::_scrollerDeletedCb(void *data, Evas *, Evas_Object *, void *) {
    auto *pv = static_cast<_WPageSlideViewControllerImpl *>(data);
    pv->_scroller = nullptr;
    pv->_box = nullptr;
}

// ---- pages

bool _WPageSlideViewControllerImpl::attachPage(WViewController *vc, bool isContentView) {
    if (_scroller == nullptr || vc == nullptr) {
        return false;
    }
    const WViewWeakPtr self = _owner->getWeakPtr();
    const WViewWeakPtr alive = vc->getWeakPtr();
    Evas_Object *base = addPageBase(_box);
    vc->create(base, nullptr);
    // The view may have destroyed the page slide, and so itself.
    if (self.expired()) {
        return alive.expired();
    }
    if (!alive.expired()) {
        elm_object_part_content_set(base, CONTENT_PART, vc->getEvasObject());
    }
    elm_box_pack_end(_box, base);
    _pages->push_back({alive.expired() ? nullptr : vc, base, isContentView});
    return true;
}

bool _WPageSlideViewControllerImpl::fillPage(int index, WViewController *vc, bool isContentView) {
    if (index < 0 || index > pageCount()) {
        WERROR("Index is not in range(index=%d,count=%d)", index, pageCount());
        return false;
    }
    // The index behind the last page has none, and the view then gets no parent.
    _WPage *page = pageAt(index);
    if (page != nullptr && page->liveView() != nullptr) {
        WERROR("Index is already occupied(index=%d)", index);
        return false;
    }
    if (vc == nullptr) {
        return false;
    }
    Evas_Object *base = nullptr;
    if (page != nullptr) {
        base = page->_pageBase;
        page->_view = vc;
        page->_isContentView = isContentView;
    }
    if (base != nullptr && elm_object_part_content_get(base, CONTENT_PART) != nullptr) {
        return false;
    }
    const WViewWeakPtr self = _owner->getWeakPtr();
    const WViewWeakPtr alive = vc->getWeakPtr();
    vc->create(base, nullptr);
    if (base != nullptr && !self.expired() && !alive.expired()) {
        elm_object_part_content_set(base, CONTENT_PART, vc->getEvasObject());
    }
    return true;
}

_WPage *_WPageSlideViewControllerImpl::pageAt(int index) {
    if (index < 0 || index >= pageCount()) {
        return nullptr;
    }
    return &*std::next(_pages->begin(), index);
}

_WPage *_WPageSlideViewControllerImpl::pageInRange(int index) {
    _WPage *page = pageAt(index);
    if (page == nullptr) {
        WERROR("Out of page number(%d), index=%d", pageCount(), index);
    }
    return page;
}

std::vector<WViewWeakPtr> _WPageSlideViewControllerImpl::contentViews() const {
    std::vector<WViewWeakPtr> views;
    for (const _WPage &page : *_pages) {
        if (page._isContentView && page.liveView() != nullptr) {
            views.push_back(page._view->getWeakPtr());
        }
    }
    return views;
}

// ---- the view

WPageSlideViewController::WPageSlideViewController()
    : _pv(new _WPageSlideViewControllerImpl(this)) {}

WPageSlideViewController::WPageSlideViewController(const char *name)
    : WContentViewController(name), _pv(new _WPageSlideViewControllerImpl(this)) {}

WPageSlideViewController::~WPageSlideViewController() {
    // The widgets outlive their controller by a moment, in which they may still scroll.
    _WPageSlideViewControllerImpl::unhook(getEvasObject(), _pv->_scroller, _pv);
    delete _pv;
}

Evas_Object *WPageSlideViewController::onCreateView(Evas_Object *parent, void *viewParam) {
    const WViewWeakPtr self = getWeakPtr();
    Evas_Object *layout = onCreateLayout(parent, viewParam);
    if (self.expired()) {
        return layout;
    }
    Evas_Object *scroller = elm_scroller_add(layout != nullptr ? layout : parent);
    Evas_Object *whole = layout != nullptr ? layout : scroller;
    _WPageSlideViewControllerImpl *pv = _pv;
    pv->hook(whole, scroller);
    pv->setUpScroller(scroller);
    // A copy, because the handler may destroy this view and the stored one with it.
    const std::function<void(Evas_Object *)> initialise = _pv->_initScrollerHandler;
    if (initialise) {
        initialise(scroller);
    } else {
        onInitScroller(scroller);
    }
    if (self.expired()) {
        _WPageSlideViewControllerImpl::unhook(whole, scroller, pv);
        return whole;
    }
    if (layout != nullptr) {
        elm_object_part_content_set(layout, SCROLLER_PART, scroller);
    }
    pv->addBox(scroller);
    const auto firstSize = [pv, whole](void *) {
        pv->resizePages(whole);
        return false;
    };
    WTimer::addTimer(0.0, firstSize, this, whole);
    return whole;
}

Evas_Object *WPageSlideViewController::onCreateLayout(Evas_Object *, void *) {
    return nullptr;
}

void WPageSlideViewController::onInitScroller(Evas_Object *) {}

void WPageSlideViewController::onAttachedToNaviframe(WNaviframeController *naviframe,
                                                     Elm_Object_Item *naviItem) {
    // Each page that is told may change the pages, or end its own view or this one.
    for (const WViewWeakPtr &weak : _pv->contentViews()) {
        auto *view = static_cast<WContentViewController *>(weak.lock().get());
        if (view != nullptr) {
            view->setNaviframeController(naviframe);
            view->setNaviItem(naviItem, false);
            view->notifyAttached();
        }
    }
}

bool WPageSlideViewController::appendPage(WViewController *vc) {
    if (!_pv->attachPage(vc, false)) {
        WERROR("Fail to attach the page!");
        return false;
    }
    return true;
}

bool WPageSlideViewController::appendPage(WContentViewController *vc) {
    const WViewWeakPtr self = getWeakPtr();
    const WViewWeakPtr page = vc != nullptr ? vc->getWeakPtr() : WViewWeakPtr();
    if (!_pv->attachPage(vc, true)) {
        WERROR("Fail to attach the page!");
        return false;
    }
    if (!self.expired() && !page.expired()) {
        _givePlace(vc);
    }
    return true;
}

bool WPageSlideViewController::appendPage() {
    if (_pv->_scroller == nullptr) {
        WERROR("Fail to attach the page!");
        return false;
    }
    Evas_Object *base = addPageBase(_pv->_box);
    elm_box_pack_end(_pv->_box, base);
    _pv->_pages->push_back({nullptr, base, false});
    return true;
}

bool WPageSlideViewController::removePage(int index) {
    _WPage *page = _pv->pageInRange(index);
    if (page == nullptr) {
        return false;
    }
    const WViewWeakPtr self = getWeakPtr();
    Evas_Object *base = page->_pageBase;
    elm_box_unpack(_pv->_box, base);
    evas_object_del(base);
    // The end of the page's view may have changed the pages, or ended this view.
    if (!self.expired()) {
        _pv->_pages->remove_if([base](const _WPage &other) { return other._pageBase == base; });
    }
    return true;
}

bool WPageSlideViewController::setPageContent(int index, WViewController *vc) {
    if (!_pv->fillPage(index, vc, false)) {
        WERROR("Fail to set page content %d!", index);
        return false;
    }
    return true;
}

bool WPageSlideViewController::setPageContent(int index, WContentViewController *vc) {
    const WViewWeakPtr self = getWeakPtr();
    const WViewWeakPtr page = vc != nullptr ? vc->getWeakPtr() : WViewWeakPtr();
    if (!_pv->fillPage(index, vc, true)) {
        WERROR("Fail to set page content %d!", index);
        return false;
    }
    if (!self.expired() && !page.expired()) {
        _givePlace(vc);
    }
    return true;
}

/// Whether either has gone meanwhile is seen to after each call that may end it.
void WPageSlideViewController::_givePlace(WContentViewController *vc) {
    const WViewWeakPtr self = getWeakPtr();
    const WViewWeakPtr page = vc->getWeakPtr();
    vc->setNaviframeController(getNaviframeController());
    vc->setNaviItem(getNaviItem(), false);
    vc->notifyAttached();
    if (!self.expired() && !page.expired()) {
        vc->onBecamePageContent(getNaviItem());
    }
}

WViewController *WPageSlideViewController::unsetPageContent(int index) {
    _WPage *page = _pv->pageInRange(index);
    if (page == nullptr) {
        return nullptr;
    }
    Evas_Object *content = elm_object_part_content_unset(page->_pageBase, CONTENT_PART);
    page->_view = nullptr;
    if (content == nullptr) {
        WERROR("elm_object_part_content_unset obj is nullptr");
        return nullptr;
    }
    return wview_get_instance(content);
}

void WPageSlideViewController::showPage(int index, bool animate) {
    if (_pv->pageInRange(index) == nullptr) {
        return;
    }
    _pv->_currentPage = index;
    if (animate) {
        elm_scroller_page_bring_in(_pv->_scroller, index, 0);
    } else {
        elm_scroller_page_show(_pv->_scroller, index, 0);
    }
}

int WPageSlideViewController::getPageCount() const {
    return _pv->pageCount();
}

WViewController *WPageSlideViewController::getPageContent(int index) const {
    const _WPage *page = _pv->pageAt(index);
    return page != nullptr ? page->liveView() : nullptr;
}

int WPageSlideViewController::getCurrentPage() const {
    return _pv->_currentPage;
}

Evas_Object *WPageSlideViewController::getScroller() const {
    return _pv->_scroller;
}

void WPageSlideViewController::setScrollbarVisible(bool visible) {
    _pv->_scrollbarVisible = visible;
}

void WPageSlideViewController::resizePages() {
    _pv->resizePages(_pv->_scroller);
}

void WPageSlideViewController::setInitScrollerHandler(std::function<void(Evas_Object *)> handler) {
    _pv->_initScrollerHandler = std::move(handler);
}

void WPageSlideViewController::setPageChangedHandler(std::function<void(int)> handler) {
    _pv->_pageChangedHandler = std::move(handler);
}

}  // namespace app_assist
