## Mapping of values into the host and back, through the bridge's own code (qv_roundtrip),
## and text through the library.

## Each case: the call's arguments, the one described, its host class ('+i': complex), its
## dimensions, its UTF-16 units ([] when not char or string), what comes back (default:
## the argument itself). Char rows of UTF-8 are decoded; other text travels one unit per
## byte, 0xFF00 | b above 0x7F; the data of the text writes is NC_CHAR bytes, one unit per
## byte even when it is UTF-8, so that the library narrows each back to the same byte.
%!test
%! raw = @(b) double (b) + (double (b) >= 128) * 65280;
%! te = char ([84 195 169]);   # Té
%! smile = char ([240 159 152 128]);
%! not_utf8 = {char(0:255), char([97 233 98]), char([195 169 255]), char([237 160 128]), ...
%!             char([192 175]), char([244 144 128 128]), ['ab'; 'cd'], char([195 97; 169 98]), ...
%!             char(reshape (97:104, [2 2 2])), char(zeros(0, 3))};
%! cases = [cellfun(@(t) {{'x', t}, 2, 'char', size(t), raw(t)}, not_utf8', 'UniformOutput', false);
%!   {{{'x', 'abc'}, 2, 'char', [1 3], [97 98 99]};
%!    {{'x', te}, 2, 'char', [1 2], [84 233]};
%!    {{'x', smile}, 2, 'char', [1 2], [55357 56832]};
%!    {{'x', char([239 188 161 0])}, 2, 'char', [1 2], [65313 0]};
%!    {{'x', ''}, 2, 'char', [0 0], zeros(0, 0)};
%!    {{'x', [intmin('int64') intmax('int64')]}, 2, 'int64', [1 2], []};
%!    {{'x', int8(1), intmax('uint64')}, 3, 'uint64', [1 1], []};
%!    {{'x', [NaN Inf -Inf -0 realmax realmin]}, 2, 'double', [1 6], []};
%!    {{'x', single([NaN Inf eps('single')])}, 2, 'single', [1 3], []};
%!    {{'x', 1:5, eye(3)}, 3, 'double', [3 3], []};
%!    {{'x', 1:5}, 2, 'double', [1 5], []};
%!    {{'x', [1+2i 3-4i]}, 2, 'double+i', [1 2], []};
%!    {{'x', single(5i)}, 2, 'single+i', [1 1], []};
%!    {{'x', struct('a', {1, 2, 3})}, 2, 'struct', [1 3], [], []};
%!    {{'x', @sin}, 2, 'function_handle', [1 1], [], []};
%!    {{'x', sparse(eye (2))}, 2, 'object', [2 2], [], []};
%!    {{'x', containers.Map()}, 2, 'object', [1 1], [], []};
%!    {{'putVarText', 1, 2, [te char(255); te char(255)]}, 4, 'char', [2 4], ...
%!     repmat([84 65475 65449 65535], 2, 1)};
%!    {{'putVarsText', 1, 2, te}, 4, 'char', [1 3], [84 65475 65449]};
%!    {{'putAttText', 1, 2, te, 4, te}, 6, 'char', [1 2], [84 233]};
%!    {{'putAttText', 1, 2, te, 4, te}, 4, 'char', [1 2], [84 233]};
%!    {{'putVarString', 1, 2, {'a', te; smile, ''}}, 4, 'string', [2 2], ...
%!     {97, [84 233]; [55357 56832], zeros(1, 0)}};
%!    {{'putVarsString', 1, 2, {'a'}}, 4, 'string', [1 1], {97}};
%!    {{'putAttString', 1, 2, 'name', 4, 'hello'}, 6, 'string', [1 1], {[104 101 108 108 111]}, ...
%!     {'hello'}};
%!    {{'putAttString', 1, 2, 'name', 4, 'hello'}, 4, 'char', [1 4], [110 97 109 101]};
%!    {{'putVarString', 1, 2, {'a', 3}}, 4, 'cell', [1 2], []};
%!    {{'putVarText', 1, 2, {'a', 'b'}}, 4, 'cell', [1 2], []}}];
%! for k = 1:rows (cases)
%!   [args, at, cls, dims, units] = cases{k}{1:5};
%!   want = [args(at), cases{k}(6:end)]{end};
%!   [back, info] = qv_roundtrip (args{:});
%!   i = info{at};
%!   got = {[i.class {'', '+i'}{1 + i.complex}], i.dims, i.units, class(back{at})};
%!   expect_same (got, {cls, dims, units, class(want)}, sprintf ('case %d', k));
%!   assert (isequaln (back{at}, want) && (! (isfloat (want) && isreal (want)) || isequal (signbit (back{at}), ...
%!           signbit (want))), 'case %d came back as %s', k, disp (back{at}));
%! end

## Every numeric class in every shape: same class and dimensions, data lent, not copied.
## Arrays the library creates are Octave arrays from the start (nothing to copy back).
%!test
%! for c = {'double', 'single', 'int8', 'uint8', 'int16', 'uint16', 'int32', 'uint32', ...
%!          'int64', 'uint64', 'logical'}
%!   [v, lent] = qv_alloc (c{1}, [2 3 4], false);
%!   [z, zlent] = qv_alloc (c{1}, [3 2], true);
%!   want = reshape (1:24, 2, 3, 4);
%!   want = {cast(want, c{1}), mod(want, 2) == 0}{1 + strcmp (c{1}, 'logical')};
%!   expect_same ({v, lent, z, zlent}, {want, true, cast(zeros (3, 2), c{1}), true}, c{1});
%!   for s = {[0 0], [0 3], [1 1], [4 1], [2 3 4]}
%!     v = cast (reshape (mod (1:prod (s{1}), 3), s{1}), c{1});
%!     [back, info] = qv_roundtrip ('x', v);
%!     expect_same ({info{2}.class, info{2}.dims, info{2}.lent, info{2}.complex, back{2}}, ...
%!                  {c{1}, s{1}, true, false, v}, sprintf ('%s %s', c{1}, mat2str (s{1})));
%!   end
%! end

## In Vlen data, a cell of char rows is the string list of an NC_STRING base.
%!test
%! data = {int32([1; 2]), {'a', 'bc'}, {{'x'}, {int8(1)}}, {}, 'chars'};
%! for op = {'putAttVlen', 'defVarFill'}
%!   [back, info] = qv_roundtrip (op{1}, 1, 2, data);
%!   e = info{4}.elements;
%!   expect_same ([cellfun(@(i) i.class, e, 'UniformOutput', false), ...
%!                 {e{3}.elements{1}.class, e{3}.elements{2}.class, e{2}.dims, back{4}}], ...
%!                {'int32', 'string', 'cell', 'cell', 'char', 'string', 'cell', [1 2], data}, op{1});
%! end
%! [~, info] = qv_roundtrip ('putVarDouble', 1, 2, {{'a'}});
%! assert (info{4}.elements{1}.class, 'cell');
