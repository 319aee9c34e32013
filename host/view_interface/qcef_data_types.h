#pragma once

#include "host/export/brovia_export.h"

#include <QMetaType>
#include <QObject>

// Plain data types that cross the view interface. The enumerations travel through queued
// signals; they are registered as meta types under their full names ("QCefDataTypes::...") when
// the library is loaded.
namespace QCefDataTypes
{
Q_NAMESPACE_EXPORT(BROVIA_EXPORT)

// Why a render process ended; equal in value to the engine's cef_termination_status_t.
enum TerminationReason
{
    AbnormalTermination = 0,
    ProcessWasKilled = 1,
    ProcessCrashed = 2,
    ProcessOutOfMemory = 3,
};
Q_ENUM_NS(TerminationReason)

// The kind of a page's script dialog; equal in value to the engine's cef_jsdialog_type_t.
enum JSDialogType
{
    Alert = 0,
    Confirm = 1,
    Prompt = 2,
};
Q_ENUM_NS(JSDialogType)
} // namespace QCefDataTypes
