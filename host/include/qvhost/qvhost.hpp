// The whole substitute host.
#pragma once

#include "qvhost/array.hpp"
#include "qvhost/msgid.hpp"
#include "qvhost/storage.hpp"
#include "qvhost/strings.hpp"
#include "qvhost/text.hpp"
