#pragma once

// What an instrumented function needs: in its body,
//     BROVIA_INSTRUMENT("OnPaint");
//     BROVIA_INSTRUMENT_CONTEXT("RunJavaScript", "script", script.toStdString());
// The control is fetched once per function and process, under the function's static guard;
// the context expression is evaluated only while somebody listens.

#include "host/instrument/controls.h"
#include "host/instrument/function_name.h"
#include "host/instrument/scoped_event.h"

#include <string>

#if defined(_MSC_VER)
#define BROVIA_INSTRUMENT_SIGNATURE __FUNCSIG__
#else
#define BROVIA_INSTRUMENT_SIGNATURE __PRETTY_FUNCTION__
#endif

#define BROVIA_INSTRUMENT_JOIN_(a, b) a##b
#define BROVIA_INSTRUMENT_JOIN(a, b) BROVIA_INSTRUMENT_JOIN_(a, b)
#define BROVIA_INSTRUMENT_CONTROL_ BROVIA_INSTRUMENT_JOIN(broviaInstrumentControl, __LINE__)
#define BROVIA_INSTRUMENT_EVENT_ BROVIA_INSTRUMENT_JOIN(broviaInstrumentEvent, __LINE__)

#define BROVIA_INSTRUMENT_FETCH_CONTROL_(name)                                                    \
    static const ::instrument::ControlElement& BROVIA_INSTRUMENT_CONTROL_ =                       \
        ::instrument::controls.getHandle(                                                         \
            ::instrument::makePlatformFunctionNameUniform(name, BROVIA_INSTRUMENT_SIGNATURE))

// A scoped event without context for the enclosing function, whose plain name is name.
#define BROVIA_INSTRUMENT(name)                                                                   \
    BROVIA_INSTRUMENT_FETCH_CONTROL_(name);                                                       \
    ::instrument::ScopedEvent BROVIA_INSTRUMENT_EVENT_(BROVIA_INSTRUMENT_CONTROL_)

// A scoped event with one context entry; contextName is a string literal, expr gives the UTF-8
// std::string value.
#define BROVIA_INSTRUMENT_CONTEXT(name, contextName, expr)                                        \
    BROVIA_INSTRUMENT_FETCH_CONTROL_(name);                                                       \
    ::instrument::ScopedEvent BROVIA_INSTRUMENT_EVENT_(BROVIA_INSTRUMENT_CONTROL_, contextName,   \
                                                       [&]() -> std::string { return (expr); })
