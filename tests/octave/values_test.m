## Mapping of values into the host and back, through the bridge's own code.

%!function same (observed, expected, where)
%!  if (! isequal (observed, expected))
%!    error ('%s:\n  observed: %s\n  expected: %s', where, disp (observed), disp (expected));
%!  end
%!endfunction

%!shared classes, shapes
%! classes = {'double', 'single', 'int8', 'uint8', 'int16', 'uint16', ...
%!            'int32', 'uint32', 'int64', 'uint64', 'logical'};
%! shapes = {[0 0], [0 3], [1 1], [1 4], [4 1], [2 3 4]};

## Same class, same dimensions, data lent rather than copied.
%!test
%! for c = classes
%!   for s = shapes
%!     n = prod (s{1});
%!     if (strcmp (c{1}, 'logical'))
%!       v = reshape (mod (1:n, 2) == 1, s{1});
%!     else
%!       v = cast (reshape (1:n, s{1}), c{1});
%!     end
%!     [back, info] = qv_roundtrip ('x', v);
%!     where = sprintf ('%s %s', c{1}, mat2str (s{1}));
%!     same ({info{2}.class, info{2}.dims, info{2}.lent, info{2}.complex}, ...
%!           {c{1}, s{1}, true, false}, where);
%!     same ({class(back{2}), size(back{2})}, {c{1}, s{1}}, where);
%!     same (back{2}, v, where);
%!   end
%! end

## Extreme values survive bit for bit.
%!test
%! vals = {intmin('int64'), intmax('int64'), intmax('uint64'), intmin('int8'), ...
%!         [NaN Inf -Inf -0 realmax realmin], single([NaN Inf eps('single')])};
%! for k = 1:numel (vals)
%!   back = qv_roundtrip ('x', vals{k});
%!   assert (isequaln (back{2}, vals{k}));
%!   same (class (back{2}), class (vals{k}), 'class');
%! end
%! back = qv_roundtrip ('x', -0);
%! assert (1 / back{2}, -Inf);

## Values stored without a data block of their own (ranges, diagonal matrices).
%!test
%! back = qv_roundtrip ('x', 1:5, eye (3), single (2:4));
%! assert (back{2}, 1:5);
%! assert (back{3}, eye (3));
%! assert (back{4}, single (2:4));

## Complex values reach the host as complex arrays of their class.
%!test
%! [back, info] = qv_roundtrip ('x', [1+2i 3-4i], single (5i));
%! assert ({info{2}.class, info{2}.complex, info{2}.dims}, {'double', true, [1 2]});
%! assert ({info{3}.class, info{3}.complex}, {'single', true});
%! assert (back{2}, [1+2i 3-4i]);
%! assert (back{3}, single (5i));

## Values the library has no use for keep only their class and shape.
%!test
%! [~, info] = qv_roundtrip ('x', struct ('a', {1, 2, 3}), @sin, sparse (eye (2)), ...
%!                           sparse (true), containers.Map ());
%! assert (cellfun (@(i) i.class, info(2:end), 'UniformOutput', false), ...
%!         {'struct', 'function_handle', 'object', 'object', 'object'});
%! assert (info{2}.dims, [1 3]);
%! assert (info{4}.dims, [2 2]);

## Char rows of UTF-8 are decoded; everything comes back as the same bytes.
%!test
%! cases = {
%!   'abc',                                 [97 98 99];
%!   char([84 195 169 109 112]),            [84 233 109 112];       # Tém
%!   char([226 130 172]),                   8364;                   # euro sign
%!   char([240 159 152 128]),               [55357 56832];          # U+1F600, a pair
%!   char([239 188 161]),                   65313;                  # fullwidth A
%!   char([97 0 98]),                       [97 0 98];
%! };
%! for k = 1:rows (cases)
%!   [back, info] = qv_roundtrip ('x', cases{k, 1});
%!   assert (info{2}.class, 'char');
%!   assert (double (info{2}.units), cases{k, 2});
%!   assert (info{2}.dims, [1 numel(cases{k, 2})]);
%!   assert (double (back{2}), double (cases{k, 1}));
%! end

## Bytes that are not UTF-8 travel one unit per byte, 0xFF00 | b above 0x7F.
%!test
%! raw = {char(0:255), char([97 233 98]), char([195 169 255]), char([237 160 128]), ...
%!        char([192 175]), char([244 144 128 128])};
%! for k = 1:numel (raw)
%!   [back, info] = qv_roundtrip ('x', raw{k});
%!   b = double (raw{k});
%!   expected = b + (b >= 128) * 65280;
%!   assert (double (info{2}.units), expected);
%!   assert (double (back{2}), b);
%! end

## Char arrays that are not rows map byte by byte and keep their shape.
%!test
%! cases = {['ab'; 'cd'], ['a'; 'b'], char(reshape (97:104, [2 2 2])), ...
%!          char([195 97; 169 98]), '', char(zeros(1, 0)), char(zeros(0, 3))};
%! for k = 1:numel (cases)
%!   [back, info] = qv_roundtrip ('x', cases{k});
%!   b = double (cases{k});
%!   assert (info{2}.class, 'char');
%!   assert (info{2}.dims, size (b));
%!   assert (double (info{2}.units), b + (b >= 128) * 65280);
%!   assert (size (back{2}), size (b));
%!   assert (ischar (back{2}));
%!   assert (double (back{2}), b);
%! end

## The data of the string writes becomes a string array of the cell's shape.
%!test
%! ops = {'putVarString', 'putVarsString', 'putAttString'};
%! data = {'a', char([84 195 169]); char([240 159 152 128]), ''};
%! for k = 1:numel (ops)
%!   args = [{ops{k}}, num2cell(1:k), {data}];
%!   [back, info] = qv_roundtrip (args{:});
%!   last = info{end};
%!   same ({last.class, last.dims}, {'string', [2 2]}, ops{k});
%!   assert (double (last.units{1, 2}), [84 233]);
%!   assert (double (last.units{2, 1}), [55357 56832]);
%!   assert (isempty (last.units{2, 2}));
%!   assert (cellfun (@ischar, back{end}));
%!   assert (double (back{end}{2, 1}), [240 159 152 128]);
%!   assert (isempty (back{end}{2, 2}));
%!   same (info{2}.class, 'double', 'other arguments keep their mapping');
%! end

## One char row is a 1-by-1 string array; other data keeps its plain mapping.
%!test
%! [back, info] = qv_roundtrip ('putAttString', 1, 2, 'name', 4, 'hello');
%! assert ({info{4}.class, info{6}.class, info{6}.dims}, {'char', 'string', [1 1]});
%! assert (back{6}, {'hello'});
%! [~, info] = qv_roundtrip ('putVarString', 1, 2, {'a', 3});
%! assert (info{4}.class, 'cell');
%! [~, info] = qv_roundtrip ('putVarText', 1, 2, {'a', 'b'});
%! assert (info{4}.class, 'cell');
%! [~, info] = qv_roundtrip ('putVarString', {'a'});
%! assert (info{2}.class, 'string');

## The data of the text writes is NC_CHAR bytes: one unit per byte, UTF-8 or not, so that
## the library narrows each back to the same byte; names and attribute text are decoded.
%!test
%! bytes = char ([84 195 169 255]);
%! units = [84 65475 65449 65535];
%! for op = {'putVarText', 'putVarsText'}
%!   for data = {bytes(1:3), bytes, [bytes; bytes]}
%!     [back, info] = qv_roundtrip (op{1}, 1, 2, data{1});
%!     same ({info{4}.class, info{4}.dims}, {'char', size(data{1})}, op{1});
%!     same (double (info{4}.units), repmat (units(1:columns (data{1})), rows (data{1}), 1), ...
%!           op{1});
%!     same (back{4}, data{1}, op{1});
%!   end
%! end
%! [~, info] = qv_roundtrip ('putAttText', 1, 2, bytes(1:3), 4, bytes(1:3));
%! same ({double(info{4}.units), double(info{6}.units)}, {[84 233], [84 233]}, 'putAttText');

## In Vlen data, a cell of char rows is the string list of an NC_STRING base.
%!test
%! data = {int32([1; 2]), {'a', 'bc'}, {{'x'}, {int8(1)}}, {}, 'chars'};
%! for op = {'putVarVlen', 'putVarsVlen', 'putAttVlen', 'defVarFill'}
%!   [back, info] = qv_roundtrip (op{1}, 1, 2, data);
%!   e = info{4}.elements;
%!   same (cellfun (@(i) i.class, e, 'UniformOutput', false), ...
%!         {'int32', 'string', 'cell', 'cell', 'char'}, op{1});
%!   assert (e{2}.dims, [1 2]);
%!   assert ({e{3}.elements{1}.class, e{3}.elements{2}.class}, {'string', 'cell'});
%!   assert (back{4}{2}, {'a', 'bc'});
%! end
%! [~, info] = qv_roundtrip ('putVarDouble', 1, 2, {{'a'}});
%! assert (info{4}.elements{1}.class, 'cell');

## Arrays the library creates are Octave arrays from the start (nothing to copy back).
%!test
%! for c = classes
%!   for s = {[2 3 4], [1 1], [3 0], [5 1]}
%!     n = prod (s{1});
%!     [v, lent] = qv_alloc (c{1}, s{1}, false);
%!     if (strcmp (c{1}, 'logical'))
%!       expected = reshape (mod (1:n, 2) == 0, s{1});
%!     else
%!       expected = cast (reshape (1:n, s{1}), c{1});
%!     end
%!     where = sprintf ('%s %s', c{1}, mat2str (s{1}));
%!     same ({lent, class(v), v}, {true, c{1}, expected}, where);
%!     [z, lent] = qv_alloc (c{1}, s{1}, true);
%!     same ({lent, z}, {true, cast(zeros(s{1}), c{1})}, where);
%!   end
%! end

## Host char, cell and string arrays are converted.
%!test
%! [v, lent] = qv_alloc ('char', [1 3], false);
%! assert ({v, lent}, {'ABC', false});
%! assert (qv_alloc ('char', [2 2], false), ['AC'; 'BD']);
%! assert (qv_alloc ('cell', [2 3], false), cell (2, 3));
%! s = qv_alloc ('string', [2 3], false);
%! assert (s, {'s1', [], 's5'; 's2', 's4', []});
