#pragma once
// One object of each class of the platform whose methods the product calls.

struct ID2D1RenderTarget;

namespace lumenor::failing {

/// Puts thunks into the tables of all those classes, the class of `target` among them. Once, behind the functions.
void StandBetweenObjects(ID2D1RenderTarget *target);

} // namespace lumenor::failing
