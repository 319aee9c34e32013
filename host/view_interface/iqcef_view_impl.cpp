#include "host/view_interface/iqcef_view_impl.h"

IQCefViewImpl::IQCefViewImpl(QWidget* parent, const QCefViewSettings& settings)
    : QWidget(parent)
{
}

IQCefViewImpl::~IQCefViewImpl() = default;
