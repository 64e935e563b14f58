// Precompiled headers belong to a target; this one has nothing else.
