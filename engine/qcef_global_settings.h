#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

// What the host gives once for the whole process, before the engine starts.
struct QCefGlobalSettings
{
    // Free text of the host's choosing; kept with the settings, read by nobody.
    QString clientLabel;
    // Decides on a TLS certificate that the engine would refuse, given as PEM; may be empty.
    std::function<bool(const QByteArray&)> certificateVerifier;
    // Initial device scale factor of new views.
    float deviceScaleFactor = 1.0f;
};
