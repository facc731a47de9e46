info
e
--rewritten
a.frag