// Scaffolding so the layer builds before its first routine lands; remove it then.
namespace voltrix {}
